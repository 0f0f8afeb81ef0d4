#include "desktop/Pulse.h"

#include <QVariantAnimation>
#include <utility>

namespace quorvik
{

void Pulse(QObject *owner, std::function<void(double strength)> show)
{
    constexpr int pulseMs = 1500;
    auto *fade = new QVariantAnimation(owner);
    fade->setStartValue(1.0);
    fade->setEndValue(0.0);
    fade->setDuration(pulseMs);
    QObject::connect(fade, &QVariantAnimation::valueChanged, owner,
                     [show = std::move(show)](const QVariant &value) { show(value.toDouble()); });
    fade->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace quorvik
