#pragma once

#include "desktop/Form.h"
#include "model/ParameterTable.h"
#include "report/forms/CommissioningHost.h"

#include <QPageSize>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QListWidget;
class QPrinter;
class QPrintPreviewWidget;
class QPushButton;
class QSpinBox;

namespace quorvik
{

class ReportPages;

/** The report of a commissioning: what it is to hold, its pages as they will be printed, PDF and printer. */
class FormCommissioningReport : public Form
{
    Q_OBJECT

public:
    FormCommissioningReport(Desk &desk, CommissioningHost &host);
    ~FormCommissioningReport() override;

    static const QString &Name();

    /** Lets the user choose the file; the program shows a dialog. @param name is proposed. */
    std::function<std::optional<QString>(const QString &name)> ChooseFile;
    /** Lets the user choose a printer; false for a cancel. The program shows the platform's dialog. */
    std::function<bool(QPrinter &printer)> ChoosePrinter;

    QSize sizeHint() const override;

protected:
    void Unload() override;

private:
    QWidget *MakeFields();
    QWidget *MakePreview();
    QWidget *MakeCommands();
    QPushButton *MakeButton(const char *name, const QString &caption, const QString &toolTip,
                            void (FormCommissioningReport::*act)());
    void FillRecordings();
    CommissioningPlace Place() const;
    ReportChoices Choices() const;
    QPageSize::PageSizeId Paper() const;
    /** The report of this moment is another one; its pages follow a little later, once. */
    void FollowSoon();
    void Follow();
    void ShowPage(int page);
    void FollowPage();
    /** What the notes say, as long as the user has typed nothing else. */
    void TakePlace();
    /** The drive or the set may be another one than was compared. */
    void ForgetComparison();
    void ShowVerification();
    void CommandCompare_Click();
    void CommandPdf_Click();
    void CommandPrint_Click();
    /** Reads the drive once more while it is on line, keeps the place, and makes the pages anew.
     * @return false where the window was closed meanwhile. */
    bool BringUpToDate();
    bool ShowPrinterDialog(QPrinter &printer);
    std::optional<QString> ShowSaveDialog(const QString &name);
    void Tell(const QString &sentence);

    CommissioningHost &host_;
    DriveVerification verification_;
    std::unique_ptr<ReportPages> pages_;
    std::array<QLineEdit *, 4> place_ = {};
    QCheckBox *checkKeep_ = nullptr;
    QDateEdit *day_ = nullptr;
    std::array<QCheckBox *, 4> parts_ = {};
    QListWidget *recordings_ = nullptr;
    QComboBox *comboPaper_ = nullptr;
    QPrintPreviewWidget *preview_ = nullptr;
    std::unique_ptr<QPrinter> previewPrinter_;
    QSpinBox *page_ = nullptr;
    QLabel *labelPages_ = nullptr;
    QLabel *labelVerification_ = nullptr;
    QLabel *labelOutcome_ = nullptr;
    QPushButton *commandCompare_ = nullptr;
    QTimer timerFollow_{this};
    QTimer timerUpdateScreen_{this};
    bool wasOnLine_ = desk().table.PortOpen();
    bool isPlaceOwn_ = false; ///< the user has typed a place, which other notes do not replace
    bool isBusy_ = false;     ///< the drive is being read
};

} // namespace quorvik
