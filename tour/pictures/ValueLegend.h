#pragma once

#include <QWidget>

namespace quorvik
{

struct AccessColors;

/** The value boxes in each state, with the word for it, as the help explains them. */
class ValueLegend : public QWidget
{
    Q_OBJECT

public:
    explicit ValueLegend(const AccessColors &colors);
};

} // namespace quorvik
