#include "trend/forms/TrendPlot.h"

#include "trend/TrendView.h"
#include "trend/forms/Plotting.h"

#include <QVBoxLayout>

namespace quorvik
{

TrendPlot::TrendPlot(TrendView &view, QWidget *parent)
    : QWidget(parent)
    , view_(view)
    , plot_(new QCustomPlot(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(plot_);
}

} // namespace quorvik
