#pragma once
// The window a task is edited in: its dates, state, reminder and notes on one page, its
// recurrence on another, the rest of what it carries on a third. Nothing reaches the item before the user saves; then only what the user
// changed is written, in an order that keeps the item's own couplings (status and percentage,
// end date and occurrences) from undoing each other.
#include "OutlookGateway.h"
#include "TaskDetailsPage.h"
#include <QDate>
#include <QDateTime>
#include <QDialog>
#include <optional>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QDateTimeEdit;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace steplets::qt {

// A date that may be "None"; the empty optional stands for the store's no-date.
using OptionalDate = std::optional<QDate>;

struct TaskPatternFields {
    enum class End { Never, AfterOccurrences, ByDate };
    int type = ol::olRecursWeekly;
    int interval = 1;
    int dayOfWeekMask = 0;
    int dayOfMonth = 0;
    int instance = 0;
    int monthOfYear = 0;
    OptionalDate start;
    End end = End::Never;
    int occurrences = 10;
    QDate endDate;
    bool regenerate = false;
    friend bool operator==(const TaskPatternFields&, const TaskPatternFields&) = default;
};

// Everything the window shows, as plain values.
struct TaskFields {
    QString subject;
    OptionalDate start;
    OptionalDate due;
    int status = ol::olTaskNotStarted;
    int importance = ol::olImportanceNormal;
    int percentComplete = 0;
    bool reminderSet = false;
    QDateTime reminderTime;
    QString body;
    QString to;
    bool recurring = false;
    TaskPatternFields pattern;
    TaskDetails details;
    friend bool operator==(const TaskFields&, const TaskFields&) = default;
};

// A check box "None" beside a date: checked, the date is disabled and counts as no date.
class OptionalDateEdit : public QWidget {
public:
    OptionalDateEdit(const QString& name, QWidget* parent);
    OptionalDate value() const;
    void setValue(const OptionalDate& date);
    QDateEdit* dateEdit() const { return m_date; }
    QCheckBox* noneBox() const { return m_none; }

private:
    QDateEdit* m_date;
    QCheckBox* m_none;
};

class TaskWindow : public QDialog {
public:
    TaskWindow(ol::TaskItem& item, QWidget* parent = nullptr);

    // What the form holds now, and whether that differs from what it was opened with.
    TaskFields fields() const;
    bool isModified() const { return fields() != m_opened; }
    bool isAssigned() const { return m_assigned; }

    // The buttons' work: each returns whether the window may close.
    bool saveAndClose();
    bool send();

    // Esc and the title bar's close: a changed form asks first.
    void reject() override;

private:
    void buildTaskPage(QWidget* page);
    void buildRecurrencePage(QWidget* page);
    void coupleStatusAndPercent();
    void enablePatternMembers();

    TaskFields readItem() const;
    void showFields(const TaskFields& f);
    // Writes what changed since the window opened; a refused value is shown and stops the save.
    bool writeChanges();
    void writePattern(const TaskFields& now);
    void refused(const QString& what);

    ol::TaskItem& m_item;
    bool m_assigned = false;
    TaskFields m_opened;

    QLineEdit* m_to = nullptr;
    QLineEdit* m_subject = nullptr;
    OptionalDateEdit* m_start = nullptr;
    OptionalDateEdit* m_due = nullptr;
    QComboBox* m_status = nullptr;
    QComboBox* m_priority = nullptr;
    QSpinBox* m_percent = nullptr;
    QCheckBox* m_reminder = nullptr;
    QDateTimeEdit* m_reminderTime = nullptr;
    QPlainTextEdit* m_body = nullptr;

    QCheckBox* m_recurring = nullptr;
    QWidget* m_patternBox = nullptr;
    QComboBox* m_type = nullptr;
    QSpinBox* m_interval = nullptr;
    QCheckBox* m_days[7] = {};
    QSpinBox* m_dayOfMonth = nullptr;
    QComboBox* m_instance = nullptr;
    QComboBox* m_month = nullptr;
    OptionalDateEdit* m_patternStart = nullptr;
    QButtonGroup* m_endGroup = nullptr;
    QSpinBox* m_occurrences = nullptr;
    QDateEdit* m_endDate = nullptr;
    QCheckBox* m_regenerate = nullptr;

    TaskDetailsPage* m_details = nullptr;
};

} // namespace steplets::qt
