#include "trend/StepTexts.h"

namespace quorvik
{

namespace
{

QString WithDoubt(double figure, double doubt, int decimals)
{
    return QStringLiteral("%1 ± %2").arg(figure, 0, 'f', decimals).arg(doubt, 0, 'f', decimals);
}

/** Nothing has no sign. */
QString ErrorText(double error)
{
    const QString text = QString::number(error, 'f', 2);
    return text == QStringLiteral("-0.00") ? text.mid(1) : text;
}

} // namespace

QStringList StepFigureCaptions()
{
    return {QStringLiteral("Dead time, ms"), QStringLiteral("Rise, ms"), QStringLiteral("Over, %"),
            QStringLiteral("Settling, ms"), QStringLiteral("Steady error")};
}

QStringList StepFigureTexts(const StepResult &result)
{
    if (result.failure != StepFailure::None)
        return QStringList(StepFigureCaptions().size(), QStringLiteral("-"));
    const StepFigures &figures = result.figures;
    return {WithDoubt(figures.deadMs, figures.deadUncertaintyMs, 0),
            WithDoubt(figures.riseMs, figures.uncertaintyMs, 0),
            WithDoubt(figures.overshootPercent, figures.uncertaintyPercent, 1),
            figures.settlingMs ? WithDoubt(*figures.settlingMs, figures.settlingUncertaintyMs, 0)
                               : QStringLiteral("never"),
            ErrorText(figures.steadyError)};
}

} // namespace quorvik
