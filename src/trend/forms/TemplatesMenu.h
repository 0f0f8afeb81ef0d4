#pragma once

#include "trend/forms/TrendSettings.h"

#include <QPushButton>
#include <functional>

class QMenu;

namespace quorvik
{

struct Desk;

/** Sets of channels by name: those that come with the program, and those that the user has kept. */
class TemplatesMenu : public QPushButton
{
    Q_OBJECT

public:
    /** @param present the arrangement that a new template keeps. */
    TemplatesMenu(Desk &desk, std::function<TrendArrangement()> present, QWidget *parent);

    /** Keeps the present arrangement under a name, in place of one of the same name. */
    void Save(const QString &name);

Q_SIGNALS:
    void Chosen(const quorvik::TrendArrangement &channels);
    /** A sentence for the user. */
    void Told(const QString &sentence);

private:
    void Fill();
    void AskForName();
    void Remove(const QString &name);

    Desk &desk_;
    std::function<TrendArrangement()> present_;
    QMenu *menu_;
};

} // namespace quorvik
