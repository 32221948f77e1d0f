#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

/// The manual, as every dialog and window reaches it. A topic is the object name of a dialog, a window or a control
/// ("FormNewTopic"); each has a page in the help folder, "index.htm" for all that has none of its own.

/// Opens the manual on the page of a topic. Without a viewer, as in most tests, nothing happens.
void ShowHelp(const QString &topic);

/// The same for what the user is at: the window that `control` stands in, or, in the main window, the innermost control
/// around it that has a page. What Help buttons and F1 call.
void ShowHelp(const QWidget *control);

/// Page of a topic; "" when it has none.
QString HelpPage(const QString &topic);
/// Page for a control, found as ShowHelp does; "" when nothing around it has one, as for a box of the desktop.
QString HelpPage(const QWidget *control);

/// Every topic that has a page.
QStringList HelpTopics();

/// What shows a page of the manual, by its name. The main window puts its own in and takes it away at its end.
using HelpViewer = std::function<void(const QString &page)>;
void SetHelpViewer(HelpViewer viewer);
