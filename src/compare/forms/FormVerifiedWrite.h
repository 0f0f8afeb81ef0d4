#pragma once

#include "compare/WriteReport.h"
#include "desktop/Form.h"

#include <functional>

class QCheckBox;
class QLabel;
class QTreeWidget;

namespace quorvik
{

/** What the buttons of a write report do. */
struct WriteReportCommands {
    std::function<void()> resume;
    std::function<void()> retryRefused;
    std::function<void(const QString &backupPath)> compare; ///< shows the drive beside the set of before
};

/** "Write Report": what became of each value of the last verified write, with the ways to bring the rest to
 * the drive. */
class FormVerifiedWrite : public Form
{
    Q_OBJECT

public:
    FormVerifiedWrite(Desk &desk, WriteReportCommands commands);

    void ShowReport(const WriteReport &report);
    QSize sizeHint() const override;

private:
    void ListRows();
    QWidget *MakeCommands();
    QPushButton *AddCommand(QWidget *commands, const char *name, const QString &caption,
                            const std::function<void()> &run);

    WriteReportCommands commands_;
    WriteReport report_;
    QLabel *labelSummary_;
    QLabel *labelEnd_;
    QLabel *labelBackup_;
    QCheckBox *checkAll_;
    QTreeWidget *listRows_;
    QPushButton *commandResume_ = nullptr;
    QPushButton *commandRetry_ = nullptr;
    QPushButton *commandCompare_ = nullptr;
};

} // namespace quorvik
