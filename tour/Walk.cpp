#include "tour/Walk.h"

#include "blocks/BlockForm.h"
#include "desktop/ValueBox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <algorithm>
#include <memory>

namespace quorvik
{

namespace
{

constexpr int steadyMs = 200; ///< in which a value must not leave its span: it has settled

QWidget *EditDialog(Tour &tour)
{
    return tour.User().Modal(QStringLiteral("FormModifyParameterValue"));
}

/** Types a text, or takes what the dialog offers in its place. */
QString Answer(QWidget *dialog, const QString &text)
{
    for (auto *option : dialog->findChildren<QAbstractButton *>())
        if (option->isVisible() && option->objectName().startsWith(QLatin1String("Option1")) &&
            option->text().remove(u'&') == text)
            return option->click(), QString();
    for (auto *list : dialog->findChildren<QComboBox *>())
        if (const int index = list->findText(text); list->isVisible() && index >= 0)
            return list->setCurrentIndex(index), QString();
    return Hands::TypeOver(text);
}

} // namespace

ValueBox *Walk::BoxIn(Tour &tour, const QString &caption, int p)
{
    const QWidget *frame = tour.User().WindowTitled(caption);
    const auto *form = frame ? frame->findChild<BlockForm *>() : nullptr;
    if (!form)
        return nullptr;
    const QList<SheetRow> &rows = form->Sheet().Rows();
    const auto row = std::ranges::find(rows, p, &SheetRow::param);
    return form->findChild<ValueBox *>(ControlName("Text1", int(row - rows.begin())));
}

void Walk::AtDrive(const QString &what, const QStringList &commands)
{
    tour_.Do(what, [&tour = tour_, commands] {
        for (const QString &command : commands)
            tour.Drive().Send(command);
        return QString();
    });
}

void Walk::Open(const QString &entry, const QString &caption)
{
    tour_.Do(QStringLiteral("Blocks, ") + caption,
             [&tour = tour_, entry] { return tour.User().ChooseMenu(entry); });
    tour_.Add(
        caption + QStringLiteral(" is open"),
        [&tour = tour_, caption] { return tour.User().WindowTitled(caption) != nullptr; },
        [] { return QString(); });
}

void Walk::Close(const QString &caption)
{
    tour_.Do(caption + QStringLiteral(" is closed"), [&tour = tour_, caption] {
        QWidget *window = tour.User().WindowTitled(caption);
        return window && window->close() ? QString() : caption + QStringLiteral(" is not open");
    });
}

void Walk::Click(const QString &caption, const QString &control)
{
    const auto found = [&tour = tour_, caption, control]() -> QWidget * {
        QWidget *front = QApplication::activeModalWidget();
        if (!front)
            front = tour.User().WindowTitled(caption);
        auto *widget = front ? front->findChild<QWidget *>(control) : nullptr;
        return widget && widget->isVisible() && widget->isEnabled() ? widget : nullptr;
    };
    tour_.Add(
        caption + QStringLiteral(": ") + control, [found] { return found() != nullptr; },
        [&tour = tour_, found] { return tour.User().Click(found()); });
}

void Walk::Enter(const QString &caption, int p, const QString &text, std::int32_t rawValue)
{
    const QString what = QStringLiteral("(%1) is set to %2").arg(p).arg(text);
    tour_.Add(
        QStringLiteral("A click on (%1)").arg(p),
        [&tour = tour_, caption, p] { return BoxIn(tour, caption, p) != nullptr; },
        [&tour = tour_, caption, p] { return tour.User().Click(BoxIn(tour, caption, p)); });
    tour_.Add(
        what, [&tour = tour_] { return EditDialog(tour) && QApplication::focusWidget(); },
        [&tour = tour_, text] {
            const QString failure = Answer(EditDialog(tour), text);
            return failure.isEmpty() ? tour.User().Click(QStringLiteral("CommandOK")) : failure;
        });
    tour_.Add(
        what + QStringLiteral(": the drive holds it"),
        [&tour = tour_, p, start = QStringLiteral("%1 %2 ").arg(p).arg(rawValue)] {
            return !QApplication::activeModalWidget() &&
                   tour.Drive().Print(p).value_or(QString()).startsWith(start);
        },
        [] { return QString(); });
}

void Walk::See(const QString &caption, int p, Span span)
{
    const auto since = std::make_shared<QElapsedTimer>();
    const auto number = [&tour = tour_, caption, p] {
        const ValueBox *box = BoxIn(tour, caption, p);
        bool isNumber = false;
        const double value = box ? box->text().section(u' ', 0, 0).toDouble(&isNumber) : 0;
        return isNumber ? value : qQNaN();
    };
    tour_.Add(
        QStringLiteral("%1: (%2) is between %3 and %4").arg(caption).arg(p).arg(span.low).arg(span.high),
        [since, number, span] {
            const double value = number();
            if (!(value >= span.low && value <= span.high))
                since->invalidate();
            else if (!since->isValid())
                since->start();
            return since->isValid() && since->elapsed() > steadyMs;
        },
        [&tour = tour_, number] {
            tour.Say(QStringLiteral("   it shows %1").arg(number()));
            return QString();
        });
}

void Walk::SeeText(const QString &caption, int p, const QString &shownText)
{
    tour_.Add(
        QStringLiteral("%1: (%2) says %3").arg(caption).arg(p).arg(shownText),
        [&tour = tour_, caption, p, shownText] {
            const ValueBox *box = BoxIn(tour, caption, p);
            return box && box->text() == shownText;
        },
        [] { return QString(); });
}

void Walk::SeeState(const QString &stateText)
{
    tour_.Add(
        QStringLiteral("The status bar says ") + stateText,
        [&tour = tour_, stateText] {
            const auto *panel = tour.TheProgram().Main().findChild<QLabel *>(QStringLiteral("DriveStatus"));
            return panel && panel->text() == stateText;
        },
        [] { return QString(); });
}

void Walk::Start()
{
    AtDrive(QStringLiteral("The start button is pushed"),
            {QStringLiteral("terminal digital 2 1"), QStringLiteral("terminal digital 1 1")});
    SeeState(QStringLiteral("Run"));
}

void Walk::Stop()
{
    AtDrive(QStringLiteral("The stop button is pushed"),
            {QStringLiteral("terminal digital 1 0"), QStringLiteral("terminal digital 2 0")});
    SeeState(QStringLiteral("Stop"));
}

void Walk::Picture(const QString &name)
{
    tour_.Do(QStringLiteral("A picture"), [&tour = tour_, name] {
        tour.TakePicture(name);
        return QString();
    });
}

QString Analog(int member, double percent)
{
    constexpr int fullCounts = 2047;
    return QStringLiteral("terminal analog %1 %2").arg(member).arg(int(fullCounts * percent / 100));
}

QString Contact(int member, bool isClosed)
{
    return QStringLiteral("terminal digital %1 %2").arg(member).arg(int(isClosed));
}

} // namespace quorvik
