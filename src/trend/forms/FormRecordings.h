#pragma once

#include "desktop/Form.h"
#include "trend/StoredRecording.h"

#include <QTimer>
#include <functional>
#include <optional>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

namespace quorvik
{

class TrendHost;

/** "Recordings": what was kept of the trend recorder, the newest first. */
class FormRecordings : public Form
{
    Q_OBJECT

public:
    /** Shows a recording, in place of what is shown or laid over it. */
    using OpenRecording = std::function<void(const QString &path, bool asOverlay)>;

    static QString Name() { return QStringLiteral("FormRecordings"); }

    FormRecordings(Desk &desk, TrendHost &host, OpenRecording open);

    /** Lets the user choose the file to export to; the program shows a dialog. */
    std::function<std::optional<QString>(const QString &folder)> ChooseExport;

    QSize sizeHint() const override;
    /** Chooses one, where it is in the list. */
    void Choose(const QString &path);

private:
    QWidget *MakeFields();
    QWidget *MakeCommands();
    QPushButton *MakeButton(const char *name, const QString &caption, const QString &toolTip,
                            void (FormRecordings::*act)());
    /** Lists the recordings anew; those that were selected stay so. */
    void List();
    void Filter();
    void Follow();
    /** The selected ones, from the top; those that the filter hides are not among them. */
    std::vector<const StoredRecording *> Selected() const;
    void Tell(const QString &sentence);
    void CommandOpen_Click();
    void CommandOverlay_Click();
    void CommandKeep_Click();
    void CommandDelete_Click();
    void CommandExport_Click();

    TrendHost &host_;
    OpenRecording open_;
    std::vector<StoredRecording> recordings_;
    QLineEdit *textFilter_;
    QTreeWidget *listRecordings_;
    QLabel *labelState_;
    QLineEdit *textTitle_;
    QPlainTextEdit *textNotes_;
    QPushButton *commandOpen_ = nullptr;
    QPushButton *commandOverlay_ = nullptr;
    QPushButton *commandKeep_ = nullptr;
    QPushButton *commandDelete_ = nullptr;
    QPushButton *commandExport_ = nullptr;
    QString shown_; ///< path of the one whose title and notes stand in the fields
    QTimer timerFollow_{this};
};

} // namespace quorvik
