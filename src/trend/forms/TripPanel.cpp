#include "trend/forms/TripPanel.h"

#include "model/ParameterTable.h"
#include "platform/Guard.h"
#include "platform/TimeUnits.h"
#include "trend/TrendRecorder.h"
#include "trend/TripTrend.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

namespace quorvik
{

TripPanel::TripPanel(const ParameterTable &table, TrendRecorder &recorder, TripTrend &trips, QWidget *parent)
    : QWidget(parent)
    , table_(table)
    , recorder_(recorder)
    , trips_(trips)
    , checkOn_(new QCheckBox(this))
    , labelChannels_(new QLabel(this))
{
    checkOn_->setText(
        QStringLiteral("Keep &%1 s before a trip").arg(recorder.Timings().tripMs / MsPerSecond));
    checkOn_->setObjectName(QStringLiteral("CheckBeforeTrip"));
    checkOn_->setToolTip(QStringLiteral("While a drive is on line these channels are recorded all the time, "
                                        "and what was before a trip is kept under Recordings"));
    labelChannels_->setObjectName(QStringLiteral("LabelTripChannels"));
    labelChannels_->setTextFormat(Qt::PlainText);
    labelChannels_->setWordWrap(true);
    auto *these = new QPushButton(QStringLiteral("Use the Channels of This Window"), this);
    these->setObjectName(QStringLiteral("CommandUseThese"));
    these->setToolTip(QStringLiteral("The first %1 of them").arg(TripTrend::MostChannels));
    auto *usual = new QPushButton(QStringLiteral("Use the Usual Ones"), this);
    usual->setObjectName(QStringLiteral("CommandUseUsual"));
    auto *commands = new QHBoxLayout;
    commands->addWidget(these);
    commands->addWidget(usual);
    commands->addStretch(1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(checkOn_);
    layout->addWidget(labelChannels_);
    layout->addLayout(commands);
    layout->addStretch(1);
    On(checkOn_, &QCheckBox::toggled, this, [this](bool isOn) {
        trips_.SetOn(isOn);
        Q_EMIT Changed();
    });
    On(these, &QPushButton::clicked, this, [this] { UseThese(); });
    On(usual, &QPushButton::clicked, this, [this] { UseUsual(); });
    Follow();
}

void TripPanel::UseThese()
{
    std::vector<int> params;
    for (const TrendTrack &track : recorder_.Data().tracks)
        params.push_back(track.channel.param);
    if (params.empty()) {
        Q_EMIT Told(QStringLiteral("This window has no channels yet."));
        return;
    }
    trips_.SetChannels(params);
    Follow();
    Q_EMIT Changed();
}

void TripPanel::UseUsual()
{
    trips_.SetChannels(TripTrend::UsualChannels());
    Follow();
    Q_EMIT Changed();
}

void TripPanel::Follow()
{
    checkOn_->setChecked(trips_.IsOn());
    QStringList names;
    for (const int p : trips_.Channels())
        names += p <= table_.LastParam ? table_.FullName(p) : QStringLiteral("(%1)").arg(p);
    labelChannels_->setText(names.join(QStringLiteral(", ")));
}

} // namespace quorvik
