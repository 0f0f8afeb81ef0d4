#include "shell/NoticeStrip.h"

#include "desktop/BoxColors.h"
#include "desktop/Form.h"
#include "platform/Guard.h"
#include "platform/Strip.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

namespace quorvik
{

namespace
{

constexpr int MostActions = 3;
constexpr int EdgeWidth = 6;
/** How much of the urgency's colour the line's ground takes on. */
constexpr double Tint = 0.14;

QColor ColorOf(Urgency urgency)
{
    switch (urgency) {
    case Urgency::Fault:
        return {0xc6, 0x28, 0x28};
    case Urgency::Warning:
        return {0xd2, 0x7d, 0x00};
    case Urgency::News:
        return {0x2e, 0x9e, 0x44};
    case Urgency::Hint:
        break;
    }
    return {0x2b, 0x88, 0xc8};
}

} // namespace

NoticeStrip::NoticeStrip(Strip &strip, QWidget *parent)
    : QFrame(parent)
    , strip_(strip)
    , message_(new QLabel(this))
    , actions_(new QHBoxLayout)
    , more_(new QToolButton(this))
    , close_(new QToolButton(this))
{
    setObjectName(QStringLiteral("NoticeStrip"));
    setAccessibleName(tr("News"));
    message_->setObjectName(QStringLiteral("Message"));
    message_->setTextFormat(Qt::PlainText);
    message_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    message_->setWordWrap(true);
    more_->setObjectName(QStringLiteral("CommandNextNotice"));
    more_->setAutoRaise(true);
    more_->setFocusPolicy(Qt::StrongFocus);
    more_->setToolTip(tr("Show the next line of the news"));
    close_->setObjectName(QStringLiteral("CommandCloseNotice"));
    close_->setText(QStringLiteral("\u2715"));
    close_->setAccessibleName(tr("Close the notice"));
    close_->setToolTip(tr("Close this line (Esc)"));
    close_->setAutoRaise(true);
    close_->setFocusPolicy(Qt::StrongFocus);
    On(more_, &QToolButton::clicked, this, [this] { ShowNext(); });
    On(close_, &QToolButton::clicked, this, [this] { CloseLine(); });

    auto *layout = new QHBoxLayout(this);
    const int gap = fontMetrics().height() / 4;
    layout->setContentsMargins(EdgeWidth + 2 * gap, gap, gap, gap);
    layout->addWidget(message_, 1);
    layout->addWidget(more_, 0, Qt::AlignVCenter);
    layout->addLayout(actions_);
    layout->addWidget(close_, 0, Qt::AlignVCenter);
    for (int i = 0; i < MostActions; ++i) {
        auto *button = new QPushButton(this);
        button->setObjectName(ControlName("CommandNotice", i));
        On(button, &QPushButton::clicked, this, [this, i] { strip_.Run(key_, i); });
        actions_->addWidget(button);
        buttons_.append(button);
    }
    On(&strip, &Strip::Changed, this, [this] {
        // What is most urgent now comes to the front, whatever was leafed to.
        position_ = 0;
        ShowLine();
    });
    hide();
}

const StripLine *NoticeStrip::Line() const
{
    return position_ < strip_.Lines().size() ? &strip_.Lines().at(position_) : nullptr;
}

void NoticeStrip::ShowLine()
{
    const StripLine *line = Line();
    if (line == nullptr) {
        key_.clear();
        told_.clear();
        hide();
        return;
    }
    key_ = line->key;
    message_->setText(line->sentence);
    for (int i = 0; i < MostActions; ++i) {
        const bool isThere = i < line->actions.size();
        buttons_.at(i)->setVisible(isThere);
        if (isThere)
            buttons_.at(i)->setText(line->actions.at(i).caption);
    }
    const int others = int(strip_.Lines().size()) - 1;
    more_->setVisible(others > 0);
    more_->setText(tr("%1 more").arg(others));
    TakeColors();
    show();
    update();
    if (told_ == line->sentence)
        return;
    told_ = line->sentence;
    QAccessibleEvent event(message_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void NoticeStrip::ShowNext()
{
    position_ = (position_ + 1) % std::max(1, int(strip_.Lines().size()));
    ShowLine();
}

void NoticeStrip::CloseLine()
{
    strip_.Close(key_);
}

void NoticeStrip::TakeFocus()
{
    if (!isVisible())
        return;
    const auto first = std::ranges::find_if(buttons_, [](const QPushButton *b) { return b->isVisible(); });
    if (first != buttons_.end())
        (*first)->setFocus(Qt::ShortcutFocusReason);
    else
        close_->setFocus(Qt::ShortcutFocusReason);
}

void NoticeStrip::TakeColors()
{
    const StripLine *line = Line();
    if (line == nullptr)
        return;
    const QColor ground =
        Mixed(parentWidget()->palette().color(QPalette::Window), ColorOf(line->urgency), Tint);
    QPalette colors = message_->palette();
    if (colors.color(QPalette::WindowText) == ContrastingText(ground) && ground == ground_)
        return;
    ground_ = ground;
    colors.setColor(QPalette::WindowText, ContrastingText(ground));
    message_->setPalette(colors);
    QPalette marks = close_->palette();
    marks.setColor(QPalette::ButtonText, ContrastingText(ground));
    close_->setPalette(marks);
    more_->setPalette(marks);
}

void NoticeStrip::paintEvent(QPaintEvent *)
{
    const StripLine *line = Line();
    if (line == nullptr)
        return;
    QPainter painter(this);
    painter.fillRect(rect(), ground_);
    painter.fillRect(QRect(0, 0, EdgeWidth, height()), ColorOf(line->urgency));
}

void NoticeStrip::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        CloseLine();
    else
        QFrame::keyPressEvent(event);
}

void NoticeStrip::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange)
        TakeColors();
}

} // namespace quorvik
