#pragma once

#include <QString>

/** The titles of those blocks into which several jobs look. */
namespace quorvik::Title
{

inline const QString AccelDecel = QStringLiteral("Accel/Decel");
inline const QString AnalogInput1 = QStringLiteral("Analog Input 1");
inline const QString CurrentLoop = QStringLiteral("Current Loop");
inline const QString FaultLogic = QStringLiteral("Fault Logic");
inline const QString FieldLoop = QStringLiteral("Field Loop");
inline const QString Setpoints = QStringLiteral("Setpoints");
inline const QString StartStopLogic = QStringLiteral("Start/Stop Logic");
inline const QString VelocityLoop = QStringLiteral("Velocity Loop");

} // namespace quorvik::Title
