#include "wizards/frame/IntroPage.h"

#include "desktop/Form.h"

#include <QLabel>

namespace quorvik
{

IntroPage::IntroPage(QWidget *parent, WizardPicture *picture, const QStringList &texts)
    : WizardPage(parent, picture)
{
    for (int i = 0; i < texts.size(); ++i) {
        const QString name = ControlName("LabelIntro", i);
        if (i == 0)
            AddHeading(texts.at(i), name);
        else if (!texts.at(i).isEmpty())
            AddText(texts.at(i), name);
    }
    CloseContent();
}

} // namespace quorvik
