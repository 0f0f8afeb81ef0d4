#include "desktop/DesktopAsker.h"

#include "desktop/BoxHelp.h"
#include "desktop/BoxLines.h"
#include "desktop/SaveDialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <map>

namespace quorvik
{

namespace
{

QMessageBox::Icon BoxIcon(MsgIcon icon)
{
    switch (icon) {
    case MsgIcon::Critical:
        return QMessageBox::Critical;
    case MsgIcon::Question:
        return QMessageBox::Question;
    case MsgIcon::Exclamation:
        return QMessageBox::Warning;
    case MsgIcon::Information:
        return QMessageBox::Information;
    case MsgIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons BoxButtons(MsgButtons buttons)
{
    switch (buttons) {
    case MsgButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case MsgButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MsgButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

/** Of an answer that desktops have a caption and a place for. */
QMessageBox::StandardButton StandardButton(MsgAnswer answer)
{
    switch (answer) {
    case MsgAnswer::Ok:
        return QMessageBox::Ok;
    case MsgAnswer::Yes:
        return QMessageBox::Yes;
    case MsgAnswer::No:
        return QMessageBox::No;
    case MsgAnswer::Cancel:
        return QMessageBox::Cancel;
    case MsgAnswer::Other:
        break;
    }
    return QMessageBox::NoButton;
}

QPushButton *AddChoice(QMessageBox &box, const Choice &choice)
{
    const QMessageBox::StandardButton standard = StandardButton(choice.answer);
    if (standard == QMessageBox::NoButton)
        return box.addButton(choice.verb, QMessageBox::ActionRole);
    QPushButton *button = box.addButton(standard);
    if (!choice.verb.isEmpty()) {
        button->setText(choice.verb);
        // The desktop's picture says Yes or No, which the verb need not mean.
        button->setIcon({});
    }
    return button;
}

/** What a box belongs to, so that it has the icon and lies behind nothing: the window in front, or the main
 * one while another program is in front. */
QWidget *FrontWindow()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    // A message that stands beside the work may be gone before the box is.
    if (QWidget *active = QApplication::activeWindow(); active && !qobject_cast<QMessageBox *>(active))
        return active;
    return MainWindowOnScreen();
}

/** Shown without the last pair of parentheses, which hold what the dialog really looks for: some platforms
 * tell capitals apart, and a pattern "*.*" would miss names without a point. */
QStringList NameFilters()
{
    return {QStringLiteral("All Files (*.*) (*)"),
            QStringLiteral("Svx Parameter Files (*.Svx) (*.[Ss][Vv][Xx])")};
}

void PrepareFileDialog(QFileDialog &dialog, const FileDialogRequest &request)
{
    dialog.setWindowTitle(request.title);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(NameFilters());
    dialog.selectNameFilter(NameFilters().last());
    dialog.setDefaultSuffix(QStringLiteral("Svx"));
    if (!request.folder.isEmpty())
        dialog.setDirectory(request.folder);
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
}

} // namespace

MsgAnswer DesktopAsker::MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title)
{
    QMessageBox box(BoxIcon(icon), title.isEmpty() ? AppTitle() : title, text, BoxButtons(buttons),
                    FrontWindow());
    box.setTextFormat(Qt::PlainText);
    KeepLinesWhole(box);
    HelpOnF1(box, help_);
    // Desktops order the buttons each in its own way, and would take the first one.
    box.setDefaultButton(buttons == MsgButtons::Ok ? QMessageBox::Ok : QMessageBox::Yes);
    switch (box.exec()) {
    case QMessageBox::Yes:
        return MsgAnswer::Yes;
    case QMessageBox::No:
        return MsgAnswer::No;
    case QMessageBox::Ok:
        return MsgAnswer::Ok;
    default:
        return MsgAnswer::Cancel;
    }
}

MsgAnswer DesktopAsker::Ask(const Question &question)
{
    QMessageBox box(BoxIcon(question.icon), question.title.isEmpty() ? AppTitle() : question.title,
                    question.WholeText(), QMessageBox::NoButton, FrontWindow());
    box.setTextFormat(Qt::PlainText);
    KeepLinesWhole(box);
    HelpOnF1(box, help_);
    std::map<const QAbstractButton *, MsgAnswer> answers;
    for (const Choice &choice : question.choices) {
        QPushButton *button = AddChoice(box, choice);
        answers[button] = choice.answer;
        if (choice.answer == question.safe)
            box.setDefaultButton(button);
        if (choice.answer == question.AnswerOfEscape())
            box.setEscapeButton(button);
    }
    box.exec();
    // None was clicked where the program itself closes the box.
    const auto clicked = answers.find(box.clickedButton());
    return clicked == answers.end() ? question.AnswerOfEscape() : clicked->second;
}

void DesktopAsker::Tell(const QString &text, MsgIcon icon, const QString &title)
{
    standing_.Show(text, BoxIcon(icon), title.isEmpty() ? AppTitle() : title);
}

std::optional<QString> DesktopAsker::ShowOpen(const FileDialogRequest &request)
{
    QFileDialog dialog(FrontWindow());
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    PrepareFileDialog(dialog, request);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

std::optional<QString> DesktopAsker::ShowSave(const FileDialogRequest &request)
{
    QFileDialog dialog(FrontWindow());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    PrepareFileDialog(dialog, request);
    return RunSaveDialog(dialog, *this);
}

} // namespace quorvik
