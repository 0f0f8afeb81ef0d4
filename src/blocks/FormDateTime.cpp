#include "blocks/BlockForm.h"

#include "model/DriveClock.h"
#include "model/TextTables.h"

#include <QLabel>
#include <QLocale>
#include <QPushButton>

namespace quorvik
{

namespace
{

using namespace Param;

constexpr BlockRow Rows[] = {ClockSeconds, ClockMinutes, ClockHours, ClockDay,
                             ClockDate,    ClockMonth,   ClockYear};

/** What the drive's clock counts, taken from one reading of the computer's, in the order of the rows. */
constexpr int (*ClockWords[])(const QDateTime &) = {
    [](const QDateTime &now) { return now.time().second(); },
    [](const QDateTime &now) { return now.time().minute(); },
    [](const QDateTime &now) { return now.time().hour(); },
    // The drive's week begins with Sunday as 1.
    [](const QDateTime &now) { return now.date().dayOfWeek() % 7 + 1; },
    [](const QDateTime &now) { return now.date().day(); },
    [](const QDateTime &now) { return now.date().month(); },
    [](const QDateTime &now) { return now.date().year() % 100; },
};

class DateTimeSheet final : public BlockSheet
{
public:
    using BlockSheet::BlockSheet;

protected:
    void Draw(Drawing &d) override
    {
        const QRectF table =
            Table({0, 0}, QStringLiteral("Clock of the Drive"),
                  {ClockSeconds, ClockMinutes, ClockHours, ClockDay, ClockDate, ClockMonth, ClockYear});
        const double gap = 2;
        const double height = (table.height() - gap) / 2;
        const double x = table.right() + gap;
        DrawClock(d, {x, table.top()}, height, QStringLiteral("Drive"));
        DrawClock(d, {x, table.top() + height + gap}, height, QStringLiteral("System"));
    }

private:
    void DrawClock(Drawing &d, const QPointF &at, double height, const QString &name)
    {
        const QString control = QStringLiteral("Label") + name;
        const QString longest = DayText(4) + QStringLiteral(", ") + DriveDateText(28, 12, 30);
        const double width = ruler().text(longest) * 1.15 + 8;
        const double x = at.x() + width / 2;
        const double y = at.y() + height / 2;
        d.Frame({at, QSizeF(width, height)});
        d.Label(control, name, {at.x() + 1, at.y() + 1.6}, Qt::AlignLeft, true);
        d.LiveLabel(control + QStringLiteral("Date"), QStringLiteral("Sunday, 1/1/00"), longest, {x, y - 0.5},
                    Qt::AlignHCenter, true);
        d.LiveLabel(control + QStringLiteral("Time"), QStringLiteral("12:00:00 AM"), longest, {x, y + 2.5},
                    Qt::AlignHCenter, true);
    }
};

class FormDateTime final : public BlockForm
{
public:
    using BlockForm::BlockForm;

protected:
    void Extend() override
    {
        drive_ = {StaticLabel(QStringLiteral("LabelDriveDate")),
                  StaticLabel(QStringLiteral("LabelDriveTime"))};
        system_ = {StaticLabel(QStringLiteral("LabelSystemDate")),
                   StaticLabel(QStringLiteral("LabelSystemTime"))};
        auto *set = AddButton(QStringLiteral("CommandSet"), QStringLiteral("&Set to System"),
                              QStringLiteral("Sets drive date/time to System date/time"));
        On(set, &QPushButton::clicked, this, [this] { CommandSet_Click(); });
    }

    void Tick() override
    {
        const QLocale english = QLocale::c();
        system_.date->setText(english.toString(desk().Now().date(), QStringLiteral("dddd, M/d/yy")));
        system_.time->setText(english.toString(desk().Now().time(), QStringLiteral("h:mm:ss AP")));
        drive_.time->setText(
            DriveTimeText(RowValue(ClockHours), RowValue(ClockMinutes), RowValue(ClockSeconds)));
        // A day outside the table ends the tick here, with the rest shown.
        drive_.date->setText(DayText(RowValue(ClockDay)) + QStringLiteral(", ") +
                             DriveDateText(RowValue(ClockYear), RowValue(ClockMonth), RowValue(ClockDate)));
    }

private:
    struct Clock {
        QLabel *date = nullptr;
        QLabel *time = nullptr;
    };

    void CommandSet_Click()
    {
        const Intent intent(desk().table, Origin::DriveCommand, QStringLiteral("Set the drive's clock"));
        // Each word comes from its own reading of the clock.
        for (int p = ClockSeconds; const auto word : ClockWords)
            Write(p++, word(desk().Now()));
    }

    Clock drive_;
    Clock system_;
};

} // namespace

constexpr BlockDescriptor BlockDateTime = {.form = "FormDateTime",
                                           .window = "Date/Time",
                                           .helpTopic = "Date Time.htm",
                                           .rows = Rows,
                                           .prefix = "Clock ",
                                           .sheet = MakeSheet<DateTimeSheet>,
                                           .make = MakeBlock<FormDateTime>};

} // namespace quorvik
