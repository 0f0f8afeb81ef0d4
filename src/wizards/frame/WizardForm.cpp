#include "wizards/frame/WizardForm.h"

#include "link/DriveLink.h"
#include "platform/Asker.h"
#include "platform/Guard.h"
#include "wizards/frame/FinishPage.h"
#include "wizards/frame/FormWriteReport.h"
#include "wizards/frame/MentorTitle.h"
#include "wizards/frame/PageArea.h"
#include "wizards/frame/WizardPage.h"
#include "wizards/frame/WriteWatch.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace quorvik
{

namespace
{

bool TakesFocus(const QWidget *page, const QWidget *widget)
{
    if (!page->isAncestorOf(widget) || !widget->isEnabled() || !widget->isVisibleTo(page) ||
        (widget->focusPolicy() & Qt::TabFocus) == 0)
        return false;
    const auto *option = qobject_cast<const QRadioButton *>(widget);
    return option == nullptr || option->isChecked();
}

/** What stands between the buttons of every page once the link has gone. */
QWidget *MakeLinkGone(QWidget *parent)
{
    auto *place = new QWidget(parent);
    auto *columns = new QHBoxLayout(place);
    const int em = parent->fontMetrics().height();
    columns->setContentsMargins(em / 2, 0, em / 2, 0);
    auto *sign = new QLabel(place);
    sign->setPixmap(parent->style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(em * 3 / 2));
    QLabel *text =
        MakeLabel(place, QStringLiteral("The link to the drive is gone. Finish writes to this program only."),
                  QStringLiteral("LabelLinkGone"));
    text->setWordWrap(true);
    columns->addWidget(sign);
    columns->addWidget(text, 1);
    place->hide();
    return place;
}

} // namespace

WizardForm::WizardForm(Desk &desk, QWidget *owner, const QString &name, const QString &caption,
                       const Topics &topics)
    : DialogForm(desk, owner, name, caption, QString::fromLatin1(topics[0]))
    , helpTopics_(topics)
    , openedOnline_(desk.table.PortOpen())
    , pages_(new PageArea(this))
    , stack_(new QStackedWidget(pages_))
{
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    pages_->setWidget(stack_);
    rows->addWidget(pages_, 1);
    auto *rule = new QFrame(this);
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);
    rows->addWidget(rule);
    MakeNavigation();
    const int em = fontMetrics().height();
    // Narrower only for a screen that has not the width, as far as rows of controls allow.
    stack_->setMinimumSize(std::clamp(pages_->Room().width(), em * 45, em * 50), em * 28);
}

void WizardForm::MakeNavigation()
{
    static constexpr std::array<const char *, NavCount> captions = {"Help", "Cancel", "< &Back", "&Next >",
                                                                    "&Finish"};
    auto *row = new QHBoxLayout;
    const int margin = fontMetrics().height() * 3 / 4;
    row->setContentsMargins(margin, margin, margin, margin);
    for (int i = 0; i < NavCount; ++i) {
        auto *button = new QPushButton(QString::fromLatin1(captions[std::size_t(i)]), this);
        button->setObjectName(ControlName("CmdNav", i));
        On(button, &QPushButton::clicked, this, [this, i] { CmdNav_Click(i); });
        navButtons_[std::size_t(i)] = button;
        row->addWidget(button);
        if (i != Cancel)
            continue;
        linkGone_ = MakeLinkGone(this);
        row->addWidget(linkGone_, 1);
        row->addStretch(); // yields to the widget while that is there
    }
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
}

// The way forward comes first for a keyboard that has passed a page's controls.
void WizardForm::OrderTabs()
{
    QWidget *last = this;
    for (QWidget *widget = nextInFocusChain(); widget != this; widget = widget->nextInFocusChain())
        if (stack_->isAncestorOf(widget))
            last = widget;
    for (const Nav button : {Next, Finish, Back, Cancel, Help}) {
        setTabOrder(last, navButtons_[button]);
        last = navButtons_[button];
    }
}

void WizardForm::StackPages(QList<WizardPage *> pages, const QString &saveCaption)
{
    finishPage_ = new FinishPage(this, openedOnline_, saveCaption);
    pages.append(finishPage_);
    for (int step = 0; step <= LastStep; ++step) {
        WizardPage *page = pages.at(step);
        page->setObjectName(ControlName("FrameStep", step));
        page->setEnabled(false);
        stack_->addWidget(page);
        FitPage(step);
    }
    OrderTabs();
    On(finishPage_, &FinishPage::SaveToggled, this, [this] { ShowPlan(); });
    SetStep(0);
}

void WizardForm::DropPages()
{
    delete std::exchange(stack_, nullptr);
}

void WizardForm::SetStep(int step)
{
    if (step >= 0 && step < LastStep)
        finishEnabled_ = false;
    else if (step == LastStep)
        finishEnabled_ = true;
    LeaveStep(currentStep_);
    stack_->widget(currentStep_)->setEnabled(false);
    stack_->widget(step)->setEnabled(true);
    EnterStep(step);
    if (step == LastStep)
        ShowPlan();
    FitPage(step);
    stack_->setCurrentIndex(step);
    UpdateNavButtons(step);
    pages_->ensureVisible(0, 0);
    FocusPage(step);
}

// Texts that wrap need a height that only their width tells, and a stack does not ask for it.
void WizardForm::FitPage(int step)
{
    const int width = std::max(stack_->width(), stack_->minimumWidth());
    const int height = stack_->widget(step)->layout()->heightForWidth(width);
    stack_->setMinimumHeight(std::max(stack_->minimumHeight(), height));
    pages_->updateGeometry();
}

void WizardForm::UpdateNavButtons(int step)
{
    currentStep_ = step;
    SetHelpTopic(QString::fromLatin1(helpTopics_[std::size_t(step)]));
    navButtons_[Back]->setEnabled(step > 0);
    navButtons_[Next]->setEnabled(step < LastStep);
    navButtons_[Finish]->setEnabled(finishEnabled_);
    navButtons_[finishEnabled_ ? Finish : Next]->setDefault(true);
}

void WizardForm::FocusPage(int step)
{
    const QWidget *page = stack_->widget(step);
    if (step < LastStep) {
        for (QWidget *widget = page->nextInFocusChain(); widget != page;
             widget = widget->nextInFocusChain()) {
            if (TakesFocus(page, widget)) {
                widget->setFocus(Qt::OtherFocusReason);
                pages_->ensureWidgetVisible(widget);
                return;
            }
        }
    }
    navButtons_[finishEnabled_ ? Finish : Next]->setFocus(Qt::OtherFocusReason);
}

void WizardForm::CmdNav_Click(int index)
{
    switch (index) {
    case Help:
        ShowHelp();
        break;
    case Cancel:
        reject();
        break;
    case Back:
        SetStep(PreviousStep(currentStep_));
        break;
    case Next:
        GoNext();
        break;
    case Finish:
        FinishSetup();
        break;
    default:
        break;
    }
}

void WizardForm::GoNext()
{
    // Enter and the mnemonic leave the focus in a text box, whose text is put into form only when it is left.
    navButtons_[Next]->setFocus(Qt::OtherFocusReason);
    if (ValidateStep(currentStep_))
        SetStep(NextStep(currentStep_));
}

bool WizardForm::ValidateStep(int step)
{
    const PageCheck check = CheckStep(step);
    if (!check.focus.isEmpty())
        findChild<QWidget *>(check.focus)->setFocus(Qt::OtherFocusReason);
    return check.passed;
}

void WizardForm::ShowPlan()
{
    try {
        finishPage_->ShowLines(MakePlan(finishPage_->SaveWanted()).Lines(desk().table));
    } catch (const RuntimeFailure &failure) {
        // Finish is where it is told; until then it stands in place of the list.
        finishPage_->ShowFailure(failure.Sentence());
    }
}

void WizardForm::Follow(DriveLink &link)
{
    link_ = &link;
    On(&link, &DriveLink::ComStatusChanged, this, [this] { ComStatusChanged(); });
}

void WizardForm::ComStatusChanged()
{
    const bool gone = openedOnline_ && !desk().table.PortOpen();
    linkGone_->setVisible(gone);
    FollowLink(gone);
    if (currentStep_ == LastStep)
        ShowPlan();
}

// What the drive says to the writes comes after the window has closed.
void WizardForm::WatchWrites(const WritePlan &written, const RecordArray &before)
{
    if (link_ == nullptr || !openedOnline_)
        return;
    auto *watch = new WriteWatch(desk().table, desk().document, *link_, written, before);
    const auto report = [watch, &desk = desk(), owner = QPointer(parentWidget()), topic = HelpTopic()] {
        if (watch->Has(WriteWatch::Outcome::Refused) || watch->Has(WriteWatch::Outcome::NotWritten))
            (new FormWriteReport(desk, owner, topic, *watch))->show();
    };
    On(watch, &WriteWatch::Settled, watch, report);
    watch->Start();
}

void WizardForm::FinishSetup()
{
    if (!desk().table.DriveIsStopped()) {
        desk().asker.MsgBox(QStringLiteral("Sarvex must be in the Stop mode for the Mentor to continue!"),
                            MsgButtons::Ok, MsgIcon::Critical, MentorTitle());
        return;
    }
    // The link may have come or gone since the list was shown.
    ShowPlan();
    const RecordArray before = desk().table.Records();
    const WritePlan written = [this] {
        const Intent intent(desk().table, Origin::Mentor, MentorTitle());
        return WriteSetup();
    }();
    WatchWrites(written, before);
    for (const QString &notice : written.notices)
        desk().asker.MsgBox(notice, MsgButtons::Ok, MsgIcon::Information, MentorTitle());
    ShowReminder();
    accept();
}

void WizardForm::done(int result)
{
    Guarded([this] { LeaveStep(currentStep_); });
    DialogForm::done(result);
}

} // namespace quorvik
