#include "shell/LessonCard.h"

#include "platform/Guard.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QToolButton>

namespace quorvik
{

namespace
{

constexpr int LookIntervalMs = 300;
constexpr int LetterColumns = 34;

} // namespace

LessonCard::LessonCard(MDIFormMain &main, QWidget *parent)
    : QFrame(parent)
    , main_(main)
    , title_(new QLabel(this))
    , end_(new QLabel(QStringLiteral("That was it. The start page has the other lessons, and the help tells "
                                     "more: F1."),
                      this))
    , close_(new QToolButton(this))
{
    setObjectName(QStringLiteral("LessonCard"));
    setAccessibleName(QStringLiteral("Lesson"));
    setFrameShape(QFrame::StyledPanel);
    title_->setObjectName(QStringLiteral("LabelLesson"));
    QFont bold = font();
    bold.setBold(true);
    title_->setFont(bold);
    title_->setWordWrap(true);
    close_->setObjectName(QStringLiteral("CommandCloseLesson"));
    close_->setText(QStringLiteral("Leave"));
    close_->setToolTip(QStringLiteral("Leave the lesson"));
    end_->setWordWrap(true);

    auto *head = new QHBoxLayout;
    head->addWidget(title_, 1);
    head->addWidget(close_, 0, Qt::AlignTop);
    auto *sheet = new QWidget;
    auto *sheetLayout = new QVBoxLayout(sheet);
    sheetLayout->setContentsMargins({});
    rows_ = new QVBoxLayout;
    rows_->setSpacing(fontMetrics().height() / 2);
    sheetLayout->addLayout(rows_);
    sheetLayout->addWidget(end_);
    sheetLayout->addStretch();
    auto *scrolled = new QScrollArea(this);
    scrolled->setFrameShape(QFrame::NoFrame);
    scrolled->setWidgetResizable(true);
    scrolled->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrolled->setWidget(sheet);
    scrolled->setAccessibleName(QStringLiteral("Steps of the lesson"));
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(scrolled, 1);
    setFixedWidth(fontMetrics().averageCharWidth() * LetterColumns);

    On(close_, &QToolButton::clicked, this, [this] { Q_EMIT Closed(); });
    On(&timerLook_, &QTimer::timeout, this, [this] { Look(); });
}

void LessonCard::Begin(const Lesson &lesson)
{
    lesson_ = &lesson;
    done_ = 0;
    before_ = MomentOf(main_);
    title_->setText(QString::fromLatin1(lesson.title));
    for (QLabel *step : steps_)
        delete step;
    steps_.clear();
    for (std::size_t i = 0; i < lesson.steps.size(); ++i) {
        auto *step = new QLabel(this);
        step->setObjectName(QStringLiteral("LabelStep(%1)").arg(i));
        step->setTextFormat(Qt::PlainText);
        step->setWordWrap(true);
        rows_->addWidget(step);
        steps_.push_back(step);
    }
    ShowSteps();
    timerLook_.start(LookIntervalMs);
}

void LessonCard::Look()
{
    if (done_ == int(lesson_->steps.size()) || !lesson_->steps[std::size_t(done_)].isDone(main_, before_))
        return;
    // One at a look, so that each is seen to be ticked off.
    ++done_;
    before_ = MomentOf(main_);
    ShowSteps();
    QAccessibleEvent told(steps_[std::size_t(done_ - 1)], QAccessible::NameChanged);
    QAccessible::updateAccessibility(&told);
}

void LessonCard::ShowSteps()
{
    for (int i = 0; i < int(steps_.size()); ++i) {
        QLabel *label = steps_[std::size_t(i)];
        const QChar mark = i < done_ ? QChar(0x2713) : i == done_ ? QChar(0x25b6) : QChar(0x2022);
        const char *text = lesson_->steps[std::size_t(i)].text;
        label->setText(mark + QStringLiteral("  ") + QString::fromLatin1(text));
        label->setAccessibleName((i < done_ ? QStringLiteral("Done: ") : QString()) +
                                 QString::fromLatin1(text));
        QFont shown = font();
        shown.setBold(i == done_);
        label->setFont(shown);
    }
    end_->setVisible(done_ == int(steps_.size()));
}

void LessonCard::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        Q_EMIT Closed();
    else
        QFrame::keyPressEvent(event);
}

} // namespace quorvik
