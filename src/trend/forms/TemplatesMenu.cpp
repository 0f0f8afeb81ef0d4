#include "trend/forms/TemplatesMenu.h"

#include "desktop/Desk.h"
#include "platform/Guard.h"
#include "trend/TrendTemplates.h"
#include "trend/forms/TitleDialog.h"

#include <QMenu>
#include <QPointer>
#include <algorithm>

namespace quorvik
{

namespace
{

/** A name of the user's, as a menu entry shows it: without letting an "&" in it become a key. */
QString Caption(QString name)
{
    return name.replace(u'&', QStringLiteral("&&"));
}

TrendArrangement ArrangementOf(const TrendTemplate &builtIn)
{
    TrendArrangement channels;
    for (const int p : builtIn.params)
        channels.push_back({.curve = {.param = p, .colour = int(channels.size())}});
    return channels;
}

} // namespace

TemplatesMenu::TemplatesMenu(Desk &desk, std::function<TrendArrangement()> present, QWidget *parent)
    : QPushButton(QStringLiteral("Template&s"), parent)
    , desk_(desk)
    , present_(std::move(present))
    , menu_(new QMenu(this))
{
    setObjectName(QStringLiteral("CommandTemplates"));
    setToolTip(QStringLiteral("Sets of channels that are recorded together"));
    menu_->setObjectName(QStringLiteral("MenuTemplates"));
    setMenu(menu_);
    On(menu_, &QMenu::aboutToShow, this, [this] { Fill(); });
    Fill();
}

void TemplatesMenu::Fill()
{
    menu_->clear();
    int index = 0;
    const auto add = [&](const QString &name, const TrendArrangement &channels) {
        QAction *action = menu_->addAction(Caption(name));
        action->setObjectName(ControlName("mnuTrendTemplate", index++));
        On(action, &QAction::triggered, this, [this, channels] { Q_EMIT Chosen(channels); });
    };
    for (const TrendTemplate &builtIn : TrendTemplates())
        add(QString::fromLatin1(builtIn.title), ArrangementOf(builtIn));
    const std::vector<NamedArrangement> kept = LoadUserTemplates(desk_.settings);
    menu_->addSeparator();
    for (const auto &[name, channels] : kept)
        add(name, channels);
    menu_->addSeparator();
    QAction *save = menu_->addAction(QStringLiteral("&Save This Arrangement..."));
    save->setObjectName(QStringLiteral("mnuTrendTemplateSave"));
    On(save, &QAction::triggered, this, [this] { AskForName(); });
    QMenu *removing = menu_->addMenu(QStringLiteral("&Delete"));
    removing->setObjectName(QStringLiteral("mnuTrendTemplateDelete"));
    removing->setEnabled(!kept.empty());
    for (const auto &[name, channels] : kept)
        On(removing->addAction(Caption(name)), &QAction::triggered, this,
           [this, gone = name] { Remove(gone); });
}

void TemplatesMenu::AskForName()
{
    if (present_().empty()) {
        Q_EMIT Told(QStringLiteral("There are no channels to keep."));
        return;
    }
    const QPointer<TemplatesMenu> self = this;
    TitleDialog dialog(desk_, window(), QStringLiteral("Save Template"), QString(), nullptr);
    if (dialog.exec() == QDialog::Accepted && self)
        Save(dialog.Title());
}

void TemplatesMenu::Save(const QString &name)
{
    std::vector<NamedArrangement> kept = LoadUserTemplates(desk_.settings);
    const auto same = std::ranges::find(kept, name, &NamedArrangement::name);
    if (same != kept.end())
        same->channels = present_();
    else
        kept.push_back({name, present_()});
    if (int(kept.size()) > MostUserTemplates) {
        Q_EMIT Told(
            QStringLiteral("There are %1 templates already. Delete one first.").arg(MostUserTemplates));
        return;
    }
    StoreUserTemplates(desk_.settings, kept);
    Q_EMIT Told(QStringLiteral("Kept as the template \"%1\".").arg(name));
}

void TemplatesMenu::Remove(const QString &name)
{
    std::vector<NamedArrangement> kept = LoadUserTemplates(desk_.settings);
    std::erase_if(kept, [&](const NamedArrangement &one) { return one.name == name; });
    StoreUserTemplates(desk_.settings, kept);
    Q_EMIT Told(QStringLiteral("The template \"%1\" is gone.").arg(name));
}

} // namespace quorvik
