#pragma once

#include <QPen>
#include <QTimer>
#include <QWidget>

namespace quorvik
{

class PlotCanvas;
class TrendView;

/** The plots of the trend window, under each other with one time axis. It shows what a TrendView says, and
 * changes it as the user does. */
class TrendPlot : public QWidget
{
    Q_OBJECT

public:
    /** @param view must outlive it. */
    explicit TrendPlot(TrendView &view, QWidget *parent = nullptr);
    ~TrendPlot() override;

    /** The colour of a curve on the present palette; tells apart for colour-blind people, too. */
    QColor ColourOf(int colour) const;
    /** The pen of a curve on the present palette: the colour, dashed from the ninth curve on. */
    QPen PenOf(int colour) const;
    /** Value axes go back to the range that fits their curves. */
    void FitValues();
    /**
     * Writes the picture as it is seen, on white.
     * @param path ends in .png, .svg or .pdf. @return empty, or the sentence that says why it was not
     * written.
     */
    QString Export(const QString &path);

    PlotCanvas &Canvas() { return *canvas_; }

Q_SIGNALS:
    /** A parameter was dragged here from elsewhere. */
    void ParameterDropped(int p, int plot);

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void Tick();
    void FollowLook();
    void Speak();
    /** How much there is that may be new: samples and marks. */
    qint64 Amount() const;
    int PlotFor(const QPoint &position) const;

    TrendView &view_;
    PlotCanvas *canvas_;
    QTimer frames_;
    qint64 amount_ = 0;
};

} // namespace quorvik
