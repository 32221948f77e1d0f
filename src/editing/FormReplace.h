#pragma once

#include "editing/PageSearch.h"

#include <QDialog>

#include <memory>

class Editor;
struct FindState;

namespace Ui {
class FormReplace;
}

/// Find, and Replace, in the view that is edited: the page, or its source. Stays open beside it. What was looked for is
/// kept in FindState, for Find Next and for the next time.
class FormReplace : public QDialog
{
    Q_OBJECT

public:
    FormReplace(Editor &editor, FindState &state, QWidget *parent = nullptr);
    ~FormReplace() override;

    /// Shows itself with the texts of last time, as FindState::ReplaceMode says.
    void Open();

public slots:
    void done(int result) override;

private:
    void ShowMode();
    void ShowView();
    void EnableButtons();
    bool InSource() const;
    FindStep Entered() const;
    bool FindOnce();
    void StepAside();
    void Remember(const FindStep &step);
    bool TellPatternFault();
    void OKButton_Click();
    void Command2_Click();
    void Command1_Click();

    Editor &m_editor;
    FindState &m_state;
    std::unique_ptr<Ui::FormReplace> ui;
    bool m_lastFound = false;
};

/// Find Next of the menu: the last search again, from the selection on. Nothing was looked for yet: nothing happens.
void DoFindNext(Editor &editor, const FindState &state);
