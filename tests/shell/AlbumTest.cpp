#include "blocks/BlockForm.h"
#include "model/TextTables.h"
#include "shell/EveryWindow.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QBuffer>
#include <QComboBox>
#include <QFile>
#include <QRegularExpression>
#include <QSvgGenerator>
#include <functional>
#include <gtest/gtest.h>

namespace quorvik::testing
{

namespace
{

/** Of a list; those of parameters are the factory table's matter. */
constexpr int MostChoices = 20;

/** The texts that a widget paints by itself. */
QStringList PaintedTexts(QWidget &widget)
{
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    widget.render(&generator);
    static const QRegularExpression text(QStringLiteral("<text [^>]*>([^<]*)</text>"));
    QStringList texts;
    for (const auto &match : text.globalMatch(QString::fromUtf8(buffer.data())))
        texts += match.captured(1).trimmed();
    texts.removeAll(QString());
    return texts;
}

QStringList TextsOf(QWidget &widget)
{
    QStringList texts;
    for (const char *property : {"text", "title", "plainText", "currentText"})
        texts += widget.property(property).toString();
    texts.removeAll(QString());
    const QWidget *parent = widget.parentWidget();
    // The pages of a preview are pictures for one version of Qt and texts for another.
    const bool isInside =
        parent && (parent->inherits("QAbstractItemView") || parent->inherits("QGraphicsView"));
    if (const auto *list = qobject_cast<const QComboBox *>(&widget))
        for (int i = 0; i < std::min(list->count(), MostChoices); ++i)
            texts += list->itemText(i);
    else if (texts.isEmpty() && !isInside && widget.findChild<QWidget *>() == nullptr)
        texts = PaintedTexts(widget);
    const auto *button = qobject_cast<const QAbstractButton *>(&widget);
    if (button && button->isChecked())
        texts += QStringLiteral("(checked)");
    if (const auto *view = qobject_cast<const QAbstractItemView *>(&widget))
        for (int column = 0; column < view->model()->columnCount(); ++column)
            texts += view->model()->headerData(column, Qt::Horizontal).toString() + QLatin1Char(':') +
                     view->model()->index(0, column).data().toString();
    return texts;
}

QString Number(double value)
{
    return QString::number(value, 'g', 4);
}

QString Described(const Element &element)
{
    QStringList words{QStringLiteral("  symbol %1").arg(int(element.symbol)), element.name};
    if (!element.rect.isNull())
        words += QStringLiteral("at %1,%2 %3x%4")
                     .arg(Number(element.rect.x()), Number(element.rect.y()), Number(element.rect.width()),
                          Number(element.rect.height()));
    for (const QPointF &point : element.points)
        words += Number(point.x()) + QLatin1Char(',') + Number(point.y());
    words += {element.text, element.arrow ? QStringLiteral(">") : QString(),
              element.state != 0 ? QStringLiteral("state %1").arg(element.state) : QString(),
              element.visible ? QString() : QStringLiteral("hidden")};
    words.removeAll(QString());
    return words.join(QLatin1Char(' '));
}

/** What a window shows, line by line: its title, the elements of its drawing, the texts of its widgets. */
QStringList Described(QWidget &window, const QString &picture)
{
    QStringList lines{QStringLiteral("== %1: %2").arg(picture, window.windowTitle())};
    if (const auto *block = qobject_cast<const BlockForm *>(&window))
        for (const Element &element : block->drawing().Elements())
            lines += Described(element);
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        const bool isClock = widget->objectName() == Name("LabelSystemDate") ||
                             widget->objectName() == Name("LabelSystemTime");
        if (!widget->isVisibleTo(&window) || isClock)
            continue;
        const QStringList texts = TextsOf(*widget);
        if (texts.isEmpty() && widget->toolTip().isEmpty() && widget->accessibleName().isEmpty())
            continue;
        const QString name =
            widget->objectName().startsWith(QLatin1String("qt_")) ? QString() : widget->objectName();
        QString line = QStringLiteral("  %1 \"%2\"").arg(name, texts.join(QLatin1String("\" \"")));
        if (!widget->isEnabledTo(&window))
            line += QStringLiteral(" disabled");
        if (!widget->accessibleName().isEmpty())
            line += QStringLiteral(" called \"%1\"").arg(widget->accessibleName());
        if (!widget->toolTip().isEmpty())
            line += QStringLiteral(" tip \"%1\"").arg(widget->toolTip());
        lines += line.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    }
    return lines;
}

/**
 * All that the windows show of themselves in the factory state is written down in album.txt, and stays as it
 * is: no wire gets lost, no word changes, by a slip. ALBUM=write writes it anew, after a change that is
 * meant.
 */
TEST(Album, TheWindowsShowWhatIsWrittenDown)
{
    TestDesk desk;
    QStringList shown;
    const Visit describe = [&](QWidget &window, const QString &picture) {
        shown += Described(window, picture);
    };
    VisitBlocks(desk, describe);
    VisitOtherWindows(desk, describe);
    VisitMentors(desk, describe);
    shown += QStringLiteral("== Words that values stand for");
    const std::pair<std::function<QString(std::int32_t)>, int> tables[] = {
        {ModelText, 33}, {DriveStateText, 9}, {FaultText, 10},
        {DayText, 8},    {AccessText, 6},     {DriveTypeText, 2}};
    for (const auto &[text, count] : tables)
        for (int value = 0; value < count; ++value)
            shown += QStringLiteral("  %1 %2").arg(value).arg(text(value));
    for (int kind = 0; kind < 25; ++kind)
        for (int value = 0; value < EnumCount(kind); ++value)
            shown += QStringLiteral("  kind %1: %2 %3").arg(kind).arg(value).arg(EnumText(value, kind));

    QFile album(QStringLiteral(ALBUM));
    if (qEnvironmentVariable("ALBUM") == QLatin1String("write")) {
        ASSERT_TRUE(album.open(QIODevice::WriteOnly));
        album.write(shown.join(QLatin1Char('\n')).toUtf8() + '\n');
        return;
    }
    ASSERT_TRUE(album.open(QIODevice::ReadOnly));
    const QStringList written = QString::fromUtf8(album.readAll()).trimmed().split(QLatin1Char('\n'));
    QString window;
    for (qsizetype i = 0; i < std::min(shown.size(), written.size()); ++i) {
        if (shown.at(i).startsWith(QLatin1String("==")))
            window = shown.at(i);
        ASSERT_EQ(shown.at(i).toStdString(), written.at(i).toStdString())
            << window.toStdString() << ", line " << i + 1 << " of album.txt";
    }
    EXPECT_EQ(shown.size(), written.size());
}

} // namespace

} // namespace quorvik::testing
