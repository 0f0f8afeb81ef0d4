#pragma once

#include "blocks/DeskCircuit.h"
#include "desktop/Form.h"
#include "map/MapModel.h"
#include "model/ReadInterest.h"
#include "platform/Guard.h"

#include <functional>
#include <optional>

class QBoxLayout;
class QLabel;
class QPagedPaintDevice;
class QPrinter;
class QTimer;

namespace quorvik
{

class MapView;

/** The map of the drive: every block as a card with its values, and the wires between them. */
class FormMap : public Form
{
    Q_OBJECT

public:
    static const QString &Name();

    explicit FormMap(Desk &desk);
    ~FormMap() override;

    MapView &View() { return *view_; }
    const MapModel &Model() const { return model_; }
    /** Brings the card of a parameter into sight and pulses its row; false where no card has it. */
    bool Reveal(int p);

    /** Lets the user choose a printer; false for a cancel. The program shows the platform's dialog. */
    std::function<bool(QPrinter &printer)> ChoosePrinter;
    /** Asks for the path of a PDF file, from a folder on. The program shows a dialog. */
    std::function<std::optional<QString>(const QString &folder)> ChooseFile;

    QSize sizeHint() const override;

protected:
    void Unload() override;

private:
    void MakeButtons(QBoxLayout *layout);
    void TimerUpdateScreen_Timer();
    void ShowCard(int card);
    void Open(int card, int row);
    void ChooseMember(int card);
    void ShowMenu(int card, int row, const QPoint &globalPlace);
    void CommandPrint_Click();
    void CommandPdf_Click();
    bool ShowPrinterDialog(QPrinter &printer);
    std::optional<QString> ShowSaveDialog(const QString &folder);
    /** Draws the whole map on a page, with a line of what it shows above it. */
    void PaintPage(QPagedPaintDevice &device) const;

    DeskCircuit circuit_;
    MapModel model_;
    MapView *view_;
    QLabel *labelCard_;
    QTimer *timerUpdateScreen_;
    QTimer *soon_; ///< after the state of a value has changed
    ReadInterest interest_;
    TickGuard tickGuard_;
};

/** Shows the map, the open one or a new one; with a parameter at its card, without, -1, as it is. */
void OpenMap(Desk &desk, int p);

} // namespace quorvik
