#include "desktop/OrderTabs.h"

#include <QWidget>

namespace quorvik
{

void OrderTabs(const QWidgetList &controls)
{
    for (qsizetype i = 1; i < controls.size(); ++i)
        QWidget::setTabOrder(controls[i - 1], controls[i]);
}

} // namespace quorvik
