#pragma once

#include "trend/TrendView.h"

#include <QElapsedTimer>
#include <QWidget>

class QLabel;
class QTableWidget;

namespace quorvik
{

/** The figures of each channel between the two cursors, or of what is seen where they are not both set. */
class FiguresPanel : public QWidget
{
    Q_OBJECT

public:
    FiguresPanel(TrendView &view, QWidget *parent);

    /** Follows what is recorded. Figures of much data are worked out less often. */
    void Refresh();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void ShowFigures();
    void ShowRow(int row, const TrendTrack &track, qint64 fromUs, qint64 toUs);
    QString TimesText() const;

    TrendView &view_;
    QLabel *labelTimes_;
    QTableWidget *tableFigures_;
    QElapsedTimer sinceShown_;
    qint64 lastTookMs_ = 0;
};

/** A time of a recording as its plot calls it: seconds from the trigger, or else from its beginning. */
double SecondsAt(const TrendData &data, qint64 timeUs);

} // namespace quorvik
