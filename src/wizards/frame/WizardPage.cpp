#include "wizards/frame/WizardPage.h"

#include "wizards/frame/OptionGroup.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>

namespace quorvik
{

QLabel *MakeLabel(QWidget *parent, const QString &text, const QString &name)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setObjectName(name);
    return label;
}

void EnableFrame(QWidget *frame, bool enable)
{
    frame->setEnabled(enable);
    for (QWidget *control : frame->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        control->setEnabled(enable);
}

WizardPage::WizardPage(QWidget *parent, WizardPicture *picture)
    : QWidget(parent)
    , picture_(picture)
{
    picture->setParent(this);
    auto *columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(0);
    columns->addWidget(picture);
    content_ = new QVBoxLayout;
    const int em = fontMetrics().height();
    content_->setContentsMargins(em * 3 / 2, em, em * 3 / 2, em);
    content_->setSpacing(em * 3 / 4);
    columns->addLayout(content_, 1);
}

QLabel *WizardPage::AddHeading(const QString &text, const QString &name)
{
    QLabel *heading = AddText(text, name);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.35);
    font.setBold(true);
    heading->setFont(font);
    return heading;
}

QLabel *WizardPage::AddText(const QString &text, const QString &name)
{
    QLabel *label = MakeLabel(this, text, name);
    label->setWordWrap(true);
    content_->addWidget(label);
    return label;
}

QGroupBox *WizardPage::AddFrame(const QString &title, const QString &name)
{
    auto *frame = new QGroupBox(title, this);
    frame->setObjectName(name);
    content_->addWidget(frame);
    return frame;
}

OptionGroup *WizardPage::AddOptions(QBoxLayout *place, const QString &title, const char *name,
                                    const QStringList &captions)
{
    auto *frame = new QGroupBox(title, this);
    place->addWidget(frame, place == content_ ? 0 : 1);
    auto *group = new OptionGroup(frame, name, captions);
    auto *column = new QVBoxLayout(frame);
    for (QAbstractButton *option : group->buttons())
        column->addWidget(option);
    column->addStretch(1);
    return group;
}

QBoxLayout *WizardPage::AddColumns()
{
    auto *columns = new QHBoxLayout;
    content_->addLayout(columns);
    return columns;
}

void WizardPage::CloseContent()
{
    content_->addStretch(1);
}

} // namespace quorvik
