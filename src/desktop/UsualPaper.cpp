#include "desktop/UsualPaper.h"

#include <QLocale>

namespace quorvik
{

QPageSize UsualPaper()
{
    const bool isMetric = QLocale().measurementSystem() == QLocale::MetricSystem;
    return QPageSize(isMetric ? QPageSize::A4 : QPageSize::Letter);
}

} // namespace quorvik
