#pragma once

#include <QWidget>

class QCustomPlot;

namespace quorvik
{

class TrendView;

/** The plots of the trend window, under each other with one time axis. It shows what a TrendView says, and
 * changes it as the user does. */
class TrendPlot : public QWidget
{
    Q_OBJECT

public:
    /** @param view must outlive it. */
    explicit TrendPlot(TrendView &view, QWidget *parent = nullptr);

    /** The colour of a curve on the present palette; tells apart for colour-blind people, too. */
    QColor ColourOf(int colour) const;
    /**
     * Writes the picture as it is seen, on white.
     * @param path ends in .png, .svg or .pdf. @return empty, or the sentence that says why it was not
     * written.
     */
    QString Export(const QString &path);

Q_SIGNALS:
    /** A parameter was dragged here from elsewhere. */
    void ParameterDropped(int p, int plot);

private:
    TrendView &view_;
    QCustomPlot *plot_;
};

} // namespace quorvik
