#pragma once
// The second page of the task window: what a task carries besides its dates, state and notes
// (categories, sensitivity, billing and mileage, companies, work, role, the reminder's sound and
// a few flags). A template is authored on this window, so every property the template keeps can
// be set here. Each field is named as the task property it shows.
#include "OutlookGateway.h"
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

namespace steplets::qt {

struct TaskDetails {
    QString categories;
    int sensitivity = ol::olNormal;
    QString billingInformation;
    QString companies;
    QString mileage;
    int actualWork = 0;            // minutes
    int totalWork = 0;
    QString role;
    bool reminderPlaySound = false;
    QString reminderSoundFile;
    bool reminderOverrideDefault = false;
    bool noAging = false;
    bool teamTask = false;
    friend bool operator==(const TaskDetails&, const TaskDetails&) = default;
};

class TaskDetailsPage : public QWidget {
public:
    explicit TaskDetailsPage(QWidget* parent);

    static TaskDetails read(const ol::TaskItem& item);
    void show(const TaskDetails& d);
    TaskDetails value() const;
    // Writes to the item what differs from `was`; a refused value is a Failure.
    static void write(ol::TaskItem& item, const TaskDetails& now, const TaskDetails& was);

private:
    QLineEdit* m_categories;
    QComboBox* m_sensitivity;
    QLineEdit* m_billing;
    QLineEdit* m_companies;
    QLineEdit* m_mileage;
    QSpinBox* m_actualWork;
    QSpinBox* m_totalWork;
    QLineEdit* m_role;
    QCheckBox* m_playSound;
    QLineEdit* m_soundFile;
    QCheckBox* m_overrideDefault;
    QCheckBox* m_noAging;
    QCheckBox* m_teamTask;
};

} // namespace steplets::qt
