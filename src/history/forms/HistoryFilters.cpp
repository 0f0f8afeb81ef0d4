#include "history/forms/HistoryFilters.h"

#include "desktop/Desk.h"
#include "desktop/TypeToChoose.h"
#include "history/forms/HistoryHost.h"
#include "model/ParameterTable.h"
#include "platform/Guard.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

namespace quorvik
{

namespace
{

/** So long after a key the list follows what was typed, in milliseconds. */
constexpr int TypedMs = 200;
constexpr int ListCharacters = 14;
constexpr int All = -1; ///< the item data of "All ..."

struct Days {
    const char *caption;
    int before; ///< days before today, or All
};

constexpr Days Choices[] = {{"All days", All}, {"Today", 0}, {"Last 7 days", 6}, {"Last 30 days", 29}};

void AddLabeled(QBoxLayout *layout, const QString &caption, QWidget *field, int stretch)
{
    auto *label = new QLabel(caption);
    label->setBuddy(field);
    layout->addWidget(label);
    layout->addWidget(field, stretch);
}

} // namespace

HistoryFilters::HistoryFilters(const Desk &desk, HistoryHost &host, QWidget *parent)
    : QWidget(parent)
    , desk_(desk)
    , host_(host)
    , textSearch_(new QLineEdit(this))
    , comboParameter_(MakeList(QStringLiteral("ComboParameter"), QStringLiteral("Parameter")))
    , comboOrigin_(MakeList(QStringLiteral("ComboOrigin"), QStringLiteral("Origin")))
    , comboResult_(MakeList(QStringLiteral("ComboResult"), QStringLiteral("Result")))
    , comboDays_(MakeList(QStringLiteral("ComboDays"), QStringLiteral("Days")))
    , checkThisDrive_(new QCheckBox(QStringLiteral("This dri&ve"), this))
{
    textSearch_->setObjectName(QStringLiteral("TextSearch"));
    textSearch_->setAccessibleName(QStringLiteral("Search names, values, titles and files"));
    textSearch_->setPlaceholderText(QStringLiteral("Name, number, value, title or file"));
    textSearch_->setClearButtonEnabled(true);
    checkThisDrive_->setObjectName(QStringLiteral("CheckThisDrive"));
    FillLists();
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    auto *first = new QHBoxLayout;
    AddLabeled(first, QStringLiteral("Sea&rch:"), textSearch_, 1);
    AddLabeled(first, QStringLiteral("&Parameter:"), comboParameter_, 1);
    rows->addLayout(first);
    auto *second = new QHBoxLayout;
    AddLabeled(second, QStringLiteral("Ori&gin:"), comboOrigin_, 0);
    AddLabeled(second, QStringLiteral("Res&ult:"), comboResult_, 0);
    AddLabeled(second, QStringLiteral("&Days:"), comboDays_, 0);
    second->addWidget(checkThisDrive_);
    second->addStretch(1);
    rows->addLayout(second);

    timerTyped_.setObjectName(QStringLiteral("TimerTyped"));
    timerTyped_.setSingleShot(true);
    timerTyped_.setInterval(TypedMs);
    On(&timerTyped_, &QTimer::timeout, this, [this] { TakeOver(); });
    On(textSearch_, &QLineEdit::textChanged, this, [this] { timerTyped_.start(); });
    for (QComboBox *list : {comboParameter_, comboOrigin_, comboResult_, comboDays_})
        On(list, &QComboBox::currentIndexChanged, this, [this] { TakeOver(); });
    On(checkThisDrive_, &QCheckBox::toggled, this, [this](bool isChecked) {
        filter_.drive = isChecked ? host_.ThisDrive() : std::nullopt;
        FollowLink();
        TakeOver();
    });
    FollowLink();
}

QComboBox *HistoryFilters::MakeList(const QString &name, const QString &spoken)
{
    auto *list = new QComboBox(this);
    list->setObjectName(name);
    list->setAccessibleName(spoken);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(ListCharacters);
    return list;
}

void HistoryFilters::FillLists()
{
    comboParameter_->addItem(QStringLiteral("All parameters"), All);
    for (int p = 0; p <= desk_.table.LastParam; ++p)
        comboParameter_->addItem(desk_.table.FullName(p), p);
    TypeToChoose(comboParameter_);
    comboOrigin_->addItem(QStringLiteral("All origins"), All);
    for (int origin = 0; origin < Origins; ++origin)
        comboOrigin_->addItem(NameOf(Origin(origin)), origin);
    comboResult_->addItem(QStringLiteral("All results"), All);
    for (int result = 0; result < EntryResults; ++result)
        if (const QString name = NameOf(EntryResult(result)); !name.isEmpty())
            comboResult_->addItem(name, result);
    for (const Days &days : Choices)
        comboDays_->addItem(QString::fromLatin1(days.caption), days.before);
}

void HistoryFilters::TakeOver()
{
    timerTyped_.stop();
    filter_.text = textSearch_->text().trimmed();
    const int p = comboParameter_->currentData().toInt();
    filter_.param = p == All ? std::nullopt : std::optional(p);
    const int origin = comboOrigin_->currentData().toInt();
    filter_.origins = origin == All ? std::set<Origin>() : std::set{Origin(origin)};
    const int result = comboResult_->currentData().toInt();
    filter_.results = result == All ? std::set<EntryResult>() : std::set{EntryResult(result)};
    const int days = comboDays_->currentData().toInt();
    filter_.sinceUtcMs = days == All ? 0 : desk_.Now().date().addDays(-days).startOfDay().toMSecsSinceEpoch();
    Q_EMIT Changed();
}

QString HistoryFilters::Text() const
{
    QStringList parts;
    if (!filter_.text.isEmpty())
        parts += QStringLiteral("text \"%1\"").arg(filter_.text);
    for (const QComboBox *list : {comboParameter_, comboOrigin_, comboResult_, comboDays_})
        if (list->currentData().toInt() != All)
            parts += list->currentText();
    if (filter_.drive)
        parts += filter_.drive->identity.Text();
    return parts.join(QStringLiteral("; "));
}

void HistoryFilters::ShowOnly(int p)
{
    {
        const QSignalBlocker quiet[] = {QSignalBlocker(textSearch_), QSignalBlocker(comboParameter_),
                                        QSignalBlocker(comboOrigin_), QSignalBlocker(comboResult_),
                                        QSignalBlocker(comboDays_)};
        textSearch_->clear();
        comboParameter_->setCurrentIndex(comboParameter_->findData(p));
        for (QComboBox *list : {comboOrigin_, comboResult_, comboDays_})
            list->setCurrentIndex(0);
    }
    TakeOver();
}

void HistoryFilters::FollowLink()
{
    // A drive that was chosen stays so when the line goes down.
    const bool canBe = filter_.drive || host_.ThisDrive();
    checkThisDrive_->setEnabled(canBe);
    checkThisDrive_->setToolTip(
        canBe ? QStringLiteral("Only what was done on line with the drive that is connected")
              : QStringLiteral("Nothing is known of a drive: go on line first"));
}

} // namespace quorvik
