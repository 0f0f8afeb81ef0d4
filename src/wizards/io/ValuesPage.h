#pragma once

#include "wizards/frame/WizardPage.h"
#include "wizards/io/IOSetup.h"

#include <array>

class QComboBox;

namespace quorvik
{

class EntryBox;

/** Steps 6 and 9: two values that belong together, typed or picked from lists. */
class ValuesPage : public WizardPage
{
    Q_OBJECT

public:
    /**
     * @param infix what the controls' names have between "Label", "Text" or "Combo" and their ending.
     * @param rangeIndex of the label that tells the valid range.
     * @param values the answers, kept in step with the controls.
     */
    ValuesPage(QWidget *parent, WizardPicture *picture, const QString &infix, int rangeIndex,
               ValuePair &values);

    /** Shows what the view says; lists are filled anew and nothing is picked. */
    void Show(const ValuesView &view);

    /** Puts a typed value into form when its box is left; none as long as this is empty. */
    std::function<QString(const QString &text)> Reformat;

private:
    void MakeValue(const QString &infix, int index);
    void TextBiasGain_LostFocus(int index);

    struct ValueRow {
        QLabel *instruction = nullptr;
        QLabel *caption = nullptr;
        EntryBox *text = nullptr;
        QComboBox *combo = nullptr;
        QLabel *unit = nullptr;
    };

    ValuePair &values_;
    QLabel *intro_;
    QLabel *range_ = nullptr;
    std::array<ValueRow, 2> rows_;
};

} // namespace quorvik
