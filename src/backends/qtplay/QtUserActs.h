#pragma once
// The person at the screen of the Qt host, as a script plays it: each step is done as real input
// (mouse and keys through QTest) on the widget that the generic binding made for the named
// control, on the real message box, item window and picker. Nothing is set on a model directly:
// what the widgets do not carry to the models is what playing on this host exists to catch.
// A step that a person could not do (a hidden or disabled widget, a row that is not there) is
// refused with UserActionRefused.
#include "Script.h"
#include "UiHost.h"
#include <QJsonObject>
#include <optional>

class QDialog;
class QMessageBox;

namespace steplets {
class Form;
}

namespace steplets::qt {
class FormView;
class ContactPickerDialog;
}

namespace steplets::qtplay {

// The form action of `step` on the form's widgets; a snapshot step gives the snapshot.
std::optional<QJsonObject> actOnForm(qt::FormView& view, Form& form, const scripted::Step& step);
// Clicks the named answer on the message box, after checking what the step expects of it.
void answerMessageBox(QMessageBox& box, const MessageBoxRequest& request, const scripted::Step& step);
// Writes the step's properties on the item window's fields, then closes it as the step says.
void actInItemWindow(QDialog& window, const scripted::Step& step);
// Chooses the step's contact in the picker's list, or cancels it.
void answerPicker(qt::ContactPickerDialog& picker, const ContactPickerRequest& request, const scripted::Step& step);

} // namespace steplets::qtplay
