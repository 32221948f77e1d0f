#include "platform/surface/FontDialog.h"

#include "ui_FontDialog.h"

#include <QColorDialog>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

#include <array>

using namespace Qt::StringLiterals;

namespace {

// The sizes of the font element in pixels of an ordinary page.
constexpr std::array SizePixels{10, 13, 16, 18, 24, 32, 48};

QString TextOf(const QComboBox *box)
{
    return box->currentText().trimmed();
}

} // namespace

FontDialog::FontDialog(const CharacterFormat &format, QWidget *parent)
    : QDialog(parent), m_format(format), m_color(format.Color), ui(std::make_unique<Ui::FontDialog>())
{
    ui->setupUi(this);
    ui->ComboFamily->setEditText(format.Family);
    ui->ComboFamily->lineEdit()->selectAll();
    ui->ComboSize->setCurrentIndex(format.Size - 1);
    const auto start = [this](QCheckBox *box, Qt::CheckState state) {
        box->setTristate(state == Qt::PartiallyChecked);
        box->setCheckState(state);
        connect(box, &QCheckBox::stateChanged, this, &FontDialog::ShowPreview);
    };
    start(ui->CheckBold, format.Bold);
    start(ui->CheckItalic, format.Italic);
    start(ui->CheckUnderline, format.Underline);
    ui->ButtonColor->setIconSize(QSize(2, 1) * fontMetrics().height());
    ShowColor(format.Color);

    connect(ui->ComboFamily, &QComboBox::currentTextChanged, this, &FontDialog::ShowPreview);
    connect(ui->ComboSize, &QComboBox::currentIndexChanged, this, &FontDialog::ShowPreview);
    connect(ui->ButtonColor, &QPushButton::clicked, this, &FontDialog::ChooseColor);
    connect(ui->Buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(ui->Buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

FontDialog::~FontDialog() = default;

QVariantMap FontDialog::Changes() const
{
    QVariantMap changes;
    const auto compare = [&changes](const QString &key, const QCheckBox *box, Qt::CheckState before) {
        if (box->checkState() != before && box->checkState() != Qt::PartiallyChecked)
            changes.insert(key, box->isChecked());
    };
    compare(u"bold"_s, ui->CheckBold, m_format.Bold);
    compare(u"italic"_s, ui->CheckItalic, m_format.Italic);
    compare(u"underline"_s, ui->CheckUnderline, m_format.Underline);
    const QString family = TextOf(ui->ComboFamily);
    if (!family.isEmpty() && family.compare(m_format.Family, Qt::CaseInsensitive) != 0)
        changes.insert(u"name"_s, family);
    const int size = ui->ComboSize->currentIndex() + 1;
    if (size > 0 && size != m_format.Size)
        changes.insert(u"size"_s, QString::number(size));
    if (!m_color.isEmpty() && m_color != m_format.Color)
        changes.insert(u"color"_s, m_color);
    return changes;
}

void FontDialog::ChooseColor()
{
    const QColor start = m_color.isEmpty() ? QColor(Qt::black) : QColor(m_color);
    const QColor chosen = QColorDialog::getColor(start, this, tr("Text Color"));
    if (chosen.isValid())
        ShowColor(chosen.name().toUpper());
}

void FontDialog::ShowColor(const QString &color)
{
    m_color = color;
    QPixmap swatch(ui->ButtonColor->iconSize() * devicePixelRatio());
    swatch.setDevicePixelRatio(devicePixelRatio());
    swatch.fill(Qt::transparent);
    QPainter painter(&swatch);
    painter.setPen(palette().color(QPalette::Mid));
    if (!color.isEmpty())
        painter.setBrush(QColor(color));
    painter.drawRect(QRect({}, ui->ButtonColor->iconSize()).adjusted(0, 0, -1, -1));
    painter.end();
    ui->ButtonColor->setIcon(swatch);
    ui->ButtonColor->setText(color.isEmpty() ? tr("Choose...") : color);
    ShowPreview();
}

void FontDialog::ShowPreview()
{
    QFont font;
    if (!TextOf(ui->ComboFamily).isEmpty())
        font.setFamily(TextOf(ui->ComboFamily));
    const int size = ui->ComboSize->currentIndex();
    font.setPixelSize(SizePixels[static_cast<size_t>(size < 0 ? 2 : size)]);
    font.setBold(ui->CheckBold->checkState() == Qt::Checked);
    font.setItalic(ui->CheckItalic->checkState() == Qt::Checked);
    font.setUnderline(ui->CheckUnderline->checkState() == Qt::Checked);
    ui->LabelPreview->setFont(font);
    QPalette colors = palette(); // the ground of a page, whatever the desktop's theme
    colors.setColor(QPalette::Window, Qt::white);
    colors.setColor(QPalette::WindowText, m_color.isEmpty() ? QColor(Qt::black) : QColor(m_color));
    ui->LabelPreview->setPalette(colors);
}
