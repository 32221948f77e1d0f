#include "shell/commands/Commands.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

std::vector<Command> FormCommands()
{
    const auto later = [](const QString &name, const QString &text) {
        return NotYetAvailable({.Name = name, .Text = text});
    };
    return {
        later(u"insform"_s, MainForm::tr("&Insert Form...")),
        later(u"formval"_s, MainForm::tr("Add Field &Validation...")),
        later(u"formproclog1"_s, MainForm::tr("Form &Processing Login...")),
        CommandSeparator(),
        later(u"insfield"_s, MainForm::tr("Insert/Edit &Field (all types)...")),
        later(u"instextbox"_s, MainForm::tr("Insert &Text Box...")),
        later(u"instxtarea"_s, MainForm::tr("Insert Text &Area...")),
        later(u"inslistbox"_s, MainForm::tr("Insert &List Box...")),
        later(u"insdrop"_s, MainForm::tr("Insert &Drop-down List...")),
        later(u"inscheckbox"_s, MainForm::tr("Insert &Checkbox...")),
        later(u"insradio"_s, MainForm::tr("Insert &Radio Button...")),
        later(u"inshidden"_s, MainForm::tr("Insert &Hidden Field...")),
        later(u"inspw"_s, MainForm::tr("Insert &Password Box...")),
        later(u"insimgfield"_s, MainForm::tr("Insert I&mage Field...")),
        later(u"inssubmit"_s, MainForm::tr("Insert &Submit Button...")),
        later(u"insreset"_s, MainForm::tr("Insert &Reset Button...")),
        later(u"insbut"_s, MainForm::tr("Insert &Button...")),
        later(u"inscheckgroup"_s, MainForm::tr("Insert &Group of Checkboxes...")),
        later(u"insradiogroup"_s, MainForm::tr("Insert Gr&oup of Radio Buttons...")),
        CommandSeparator(),
        later(u"insaskwren"_s, MainForm::tr("Insert &Knowledgebase...")),
        later(u"klogin1"_s, MainForm::tr("K&nowledgebase login...")),
    };
}
