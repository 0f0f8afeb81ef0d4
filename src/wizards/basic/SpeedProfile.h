#pragma once

#include "wizards/frame/WizardPicture.h"

#include <QLineF>
#include <array>

namespace quorvik
{

/** One line of the speed profile. */
class LineAccelDecel : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Thin = 1;
    static constexpr int Thick = 2;

    LineAccelDecel(QWidget *parent, int index);

    int BorderWidth() const { return borderWidth_; }
    void SetBorderWidth(int width);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool falling_;
    int borderWidth_ = Thin;
};

/**
 * The speed over time of a run in both directions, as seven lines: 0 to 3 are the ramps in the order of the
 * accel and decel times, 4 the forward run, 5 the standstill, 6 the reverse run.
 */
class SpeedProfile : public WizardPicture
{
    Q_OBJECT

public:
    static constexpr int LineCount = 7;

    explicit SpeedProfile(QWidget *parent);

    void HighlightRamp(int index);
    /** Shows or hides what only a drive that can brake and reverse does. */
    void ShowReverse(bool show);

    /** Where a line lies on the canvas. */
    static QLineF LineOnCanvas(int index);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    std::array<LineAccelDecel *, LineCount> lines_{};
    bool showsReverse_ = true;
};

} // namespace quorvik
