#pragma once

#include <QDialog>
#include <QVariantMap>

#include <memory>

namespace Ui {
class FontDialog;
}

/// What holds for the selection; empty or 0: it differs or is not known.
struct CharacterFormat
{
    QString Family;
    int Size = 0;  ///< 1 to 7
    QString Color; ///< "#RRGGBB"
    Qt::CheckState Bold = Qt::Unchecked;
    Qt::CheckState Italic = Qt::Unchecked;
    Qt::CheckState Underline = Qt::Unchecked;
};

/// Asks for font, size, colour and style of the selected text. What differs within the selection starts out open and
/// stays as it is unless the user chooses something.
class FontDialog : public QDialog
{
    Q_OBJECT

public:
    explicit FontDialog(const CharacterFormat &format, QWidget *parent = nullptr);
    ~FontDialog() override;

    /// What the user made different, for the command "font" of the page scripts: bold, italic, underline (bool), name,
    /// size, color (texts).
    QVariantMap Changes() const;

private:
    void ChooseColor();
    void ShowColor(const QString &color);
    void ShowPreview();

    CharacterFormat m_format;
    QString m_color;
    std::unique_ptr<Ui::FontDialog> ui;
};
