#pragma once

#include "trend/StepResponse.h"

#include <QStringList>

namespace quorvik
{

/** What the figures of a step are called: "Dead time, ms" and so on. */
QStringList StepFigureCaptions();

/** The figures as texts, each with what it leaves open: "12 ± 3"; where there are none a dash each. */
QStringList StepFigureTexts(const StepResult &result);

} // namespace quorvik
