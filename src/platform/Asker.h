#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace quorvik
{

class Progress;

enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgButtons { Ok, YesNo, YesNoCancel };
enum class MsgAnswer { Ok, Yes, No, Cancel, Other };

/** A button of a question. */
struct Choice {
    MsgAnswer answer;
    QString verb = {}; ///< what it says; empty for the desktop's own caption, which Other has none of
};

/** A question whose buttons say what they do. Its texts are plain, and may hold line breaks. */
struct Question {
    QString text;
    QString title; ///< empty for the application's title
    MsgIcon icon = MsgIcon::Question;
    QString explanation = {}; ///< stands below the text
    std::vector<Choice> choices;
    MsgAnswer safe; ///< the default button, and what Escape and closing mean unless there is a Cancel
    /** What a command line calls it, where it can be answered beforehand; empty where it cannot. */
    QString word = {};

    bool Has(MsgAnswer answer) const;
    MsgAnswer AnswerOfEscape() const { return Has(MsgAnswer::Cancel) ? MsgAnswer::Cancel : safe; }
    QString WholeText() const;              ///< with the explanation
    QString VerbOf(MsgAnswer answer) const; ///< what its button says, without the mark of its key; or "Yes"
};

/** What a file dialog is to offer; the filters are those of the settings files. */
struct FileDialogRequest {
    QString title;
    QString folder;   ///< where the dialog opens; empty for where it was last used
    QString fileName; ///< proposed name, may be empty
};

/**
 * The one way to ask the user: whoever owns a command asks through it. The program answers with message
 * boxes, dialogs of its own and the platform's, a test with a script.
 */
class Asker
{
public:
    virtual ~Asker() = default;

    /**
     * Shows a message box and waits for its answer.
     * @param text plain text, never interpreted as rich text; may hold line breaks.
     * @param title an empty title stands for the application's title.
     */
    virtual MsgAnswer MsgBox(const QString &text, MsgButtons buttons, MsgIcon icon, const QString &title) = 0;

    /** Shows a question and waits for its answer, which is one of its choices. */
    virtual MsgAnswer Ask(const Question &question)
    {
        // Right for an asker that answers by itself.
        MsgBox(question.WholeText(), MsgButtons::Ok, question.icon, question.title);
        return question.safe;
    }

    /**
     * Shows a message and returns at once: nothing waits for it, and it keeps no window from being used.
     * There is never more than one of the same title and icon: while it stands, what comes next is added to
     * it.
     */
    virtual void Tell(const QString &text, MsgIcon icon, const QString &title)
    {
        // Right for an asker that answers by itself.
        MsgBox(text, MsgButtons::Ok, icon, title);
    }

    /** The file chosen to open, or nothing when the dialog was cancelled. */
    virtual std::optional<QString> ShowOpen(const FileDialogRequest &request) = 0;

    /** The file chosen to save to, with "Svx" as default extension, or nothing when the dialog was cancelled.
     */
    virtual std::optional<QString> ShowSave(const FileDialogRequest &request) = 0;

    /** Lets the user edit the value of parameter p. @return the new raw value, or nothing for a cancel. */
    virtual std::optional<std::int32_t> EditValue(int p, std::int32_t rawValue);

    /** Asks whether a drive is connected, and for its model where none is. @return True for on line. */
    virtual bool ChooseOnLine() { return false; }

    /** Lets the user choose the drive's model. */
    virtual void SelectDriveModel() {}

    /** Stays with an operation, and lets the user cancel it, until it is over. */
    virtual void ShowProgress(Progress &progress);
};

/** The application's title. */
inline const QString &AppTitle()
{
    static const QString title = QStringLiteral("Quorvik");
    return title;
}

} // namespace quorvik
