#pragma once

#include "trend/forms/Plotting.h"

namespace quorvik
{

/** The next step upwards that is read easily: 1, 2 or 5 times a power of ten. */
double NiceStep(double least);
/** The same of a time in seconds: above ten seconds parts of a minute or an hour. */
double NiceTimeStep(double least);

/**
 * The range of a value axis for what is seen. It stays as it is while the values lie in it and fill a fair
 * part, so that it does not move with each sample; else its ends are round numbers.
 * @param resolution the smallest difference of two values
 */
QCPRange ScaleFor(const QCPRange &present, double least, double greatest, double resolution);

/** Ticks at round numbers, with as many decimals as their step needs. */
class ValueTicker : public QCPAxisTicker
{
protected:
    double getTickStep(const QCPRange &range) override;
    int getSubTickCount(double tickStep) override;
    QString getTickLabel(double tick, const QLocale &locale, QChar format, int precision) override;

    double step_ = 1;
};

inline constexpr double MinutesFrom = 120; ///< seconds from which on a time axis tells minutes

/** Ticks of seconds; from MinutesFrom on as minutes and seconds, from an hour on with the hours. */
class TimeTicker : public ValueTicker
{
protected:
    double getTickStep(const QCPRange &range) override;
    QString getTickLabel(double tick, const QLocale &locale, QChar format, int precision) override;

private:
    double longest_ = 0;
};

/** A time in seconds as a reader of the axis would say it. */
QString TimeText(double seconds, int decimals);

} // namespace quorvik
