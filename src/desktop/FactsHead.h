#pragma once

#include "desktop/ValueFacts.h"

#include <QWidget>

class QLabel;

namespace quorvik
{

/** The lines above an entry that say which parameter it is for, what that is now and what it can be. */
class FactsHead : public QWidget
{
public:
    FactsHead(const Desk &desk, int p, QWidget *parent);

    const ValueFacts &Facts() const { return facts_; }
    /** Follows the table. */
    void Refresh();

private:
    QLabel *MakeLabel(const char *name, const QString &text);

    ValueFacts facts_;
    QLabel *labelValues_ = nullptr;
    QLabel *labelLimits_ = nullptr;
};

} // namespace quorvik
