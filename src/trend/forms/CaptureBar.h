#pragma once

#include "trend/TrendData.h"

#include <QWidget>
#include <vector>

class QBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace quorvik
{

/** A recording that was taken around a trigger, with the file that it is kept in. */
struct KeptCapture {
    TrendDataPtr data;
    QString path;
    QString title; ///< "Capture 2 of 14:03:10.250"
};

/** The newest captures, as numbered buttons side by side. */
class CaptureBar : public QWidget
{
    Q_OBJECT

public:
    static constexpr std::size_t Most = 10;

    explicit CaptureBar(QWidget *parent);

    /** Puts it behind the others; the oldest goes where there are too many. */
    void Add(TrendDataPtr capture, const QString &path);
    const std::vector<KeptCapture> &Captures() const { return captures_; }
    /** Which one is shown; null for none of them. */
    void SetShown(const TrendData *shown);

Q_SIGNALS:
    void ShowWanted(const quorvik::KeptCapture &capture);
    void OverlayWanted(const quorvik::KeptCapture &capture);
    void OverlayAllWanted();

private:
    void Rebuild();
    QToolButton *MakeCommand(int index);

    std::vector<KeptCapture> captures_;
    std::vector<QToolButton *> commands_;
    QBoxLayout *row_;
    QLabel *labelNone_;
    QPushButton *commandOverlayAll_;
    const TrendData *shown_ = nullptr;
    int taken_ = 0;
};

} // namespace quorvik
