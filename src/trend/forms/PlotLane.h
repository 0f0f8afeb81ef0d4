#pragma once

#include "trend/forms/PlotCurve.h"

namespace quorvik
{

/** How a plot looks on the present desktop, or on paper. */
struct PlotLook {
    QColor ground;
    QColor text;
    QColor grid;
    QColor faint;  ///< lines that matter less than a curve
    QColor chosen; ///< the desktop's colour of what is selected
    QFont font;

    static PlotLook Of(const QPalette &palette, const QFont &font);
    static PlotLook OfPaper(const QFont &font);
};

/** A channel whose values are texts: a band that changes its shade with the value, the text within it. */
class PlotLane : public PlotLayer
{
public:
    PlotLane(QCPAxisRect *rect, int param, std::int32_t attributes);

    int Param() const { return param_; }
    /** Which of the lanes of its frame it is. */
    void SetPlace(int number, int count);
    void SetLook(const PlotLook &look, const QColor &colour);
    void Update(const SampleRing &samples, const PlotWindow &window);

    /** A stretch of one value. */
    struct Band {
        qint64 fromUs = 0;
        qint64 toUs = 0;
        std::int32_t rawValue = 0;
    };
    /** What is seen, cut off nowhere; gaps are in no band. */
    const std::vector<Band> &Bands() const { return bands_; }
    QColor ShadeOf(std::int32_t rawValue) const;

protected:
    QRect clipRect() const override;
    void draw(QCPPainter *painter) override;

private:
    void DrawBand(QCPPainter *painter, const Band &band, const QRectF &row) const;
    QRectF Row() const;

    int param_;
    std::int32_t attributes_;
    int number_ = 0;
    int count_ = 1;
    PlotLook look_;
    QColor colour_;
    PlotReduction reduction_;
    PlotWindow window_;
    std::vector<Band> bands_;
};

} // namespace quorvik
