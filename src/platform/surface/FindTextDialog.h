#pragma once

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class FindTextDialog;
}

/// What is looked for, from the selection on.
struct TextQuery
{
    QString Text;
    bool Back = false;
    bool WholeWords = false;
    bool MatchCase = false;
};

enum class TextFound {
    No,
    Here,
    BeyondEnd ///< after it went on at the other end
};

/// Asks for words to look for in a text. Stays open beside it; where nothing is found it says so in its own line.
class FindTextDialog : public QDialog
{
    Q_OBJECT

public:
    /// Selects what it finds, going on at the other end of the text.
    using Search = std::function<TextFound(const TextQuery &)>;

    FindTextDialog(Search search, QWidget *parent);
    ~FindTextDialog() override;

    /// Shows itself, ready for other words.
    void Ask();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Way { Forward, Back };
    void Find(Way way);

    Search m_search;
    std::unique_ptr<Ui::FindTextDialog> ui;
};
