#pragma once

#include "wizards/frame/WizardPage.h"

#include <QStringList>

namespace quorvik
{

/** The first page: what the Mentor is for. */
class IntroPage : public WizardPage
{
    Q_OBJECT

public:
    /** @param texts of LabelIntro(0) and on; the first is the heading, an empty one is left out. */
    IntroPage(QWidget *parent, WizardPicture *picture, const QStringList &texts);
};

} // namespace quorvik
