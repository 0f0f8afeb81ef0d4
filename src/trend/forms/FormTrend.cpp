#include "trend/forms/FormTrend.h"

#include "trend/TrendRecorder.h"
#include "trend/forms/TrendHost.h"
#include "trend/forms/TrendPlot.h"

#include <QBoxLayout>

namespace quorvik
{

FormTrend::FormTrend(Desk &desk, TrendHost &host)
    : Form(desk, Name(), QStringLiteral("Trend"), QStringLiteral("Trend.htm"))
    , host_(host)
    , view_(host.Recorder())
    , plot_(new TrendPlot(view_, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(plot_, 1);
}

void FormTrend::AddChannel(int p)
{
    if (!host_.Recorder().AddChannel(p, TrendPace::Fast).isEmpty())
        host_.Recorder().AddChannel(p, TrendPace::Slow);
}

void FormTrend::OpenRecording(const QString &) {}

} // namespace quorvik
