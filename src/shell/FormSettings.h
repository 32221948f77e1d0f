#pragma once

#include <QDialog>

#include <memory>

class Settings;
struct AppState;

namespace Ui {
class FormSettings;
}

/// Tools > Settings: how pages are opened and what new files are called.
class FormSettings : public QDialog
{
    Q_OBJECT

public:
    FormSettings(AppState &app, Settings &ini, QWidget *parent = nullptr);
    ~FormSettings() override;

private:
    void OKButton_Click();

    AppState &m_app;
    Settings &m_ini;
    std::unique_ptr<Ui::FormSettings> ui;
};

/// The extension that is meant by what was typed: ".htm" for less than two characters, else with a dot in front.
QString ExtensionFromInput(const QString &typed);
