#include "TaskWrites.h"
#include "platform/StoreGateway.h"
#include "platform/runtime/Failure.h"

namespace steplets::processing {

using namespace modTasks;

bool isReadForTask(int pos)
{
    return (pos >= col::ActualWork && pos <= col::Status) || (pos >= col::Subject && pos <= col::TotalWork)
        || (pos >= col::DueDateOffset && pos <= col::FillIn4);
}

std::span<const TaskWrite> taskWrites()
{
    using K = TaskWrite::Kind;
    static const TaskWrite table[] = {
        {1, 300, "ActualWork", col::ActualWork, K::Long},
        {2, 310, "BillingInformation", col::BillingInformation, K::Text},
        {3, 320, "Body", col::Body, K::Body},
        {4, 330, "Categories", col::Categories, K::Text},
        {5, 340, "Companies", col::Companies, K::Text},
        {6, 350, "Complete", col::Complete, K::Flag},
        {7, 360, "DateCompleted", col::DateCompleted, K::DateValue},
        {8, 370, "StartDate", col::StartDate, K::StartDate},
        {9, 380, "DueDate", col::DueDate, K::DueDate},
        {10, 390, "Importance", col::Importance, K::Long},
        {11, 400, "Mileage", col::Mileage, K::Text},
        {12, 410, "NoAging", col::NoAging, K::Flag},
        {13, 420, "PercentComplete", col::PercentComplete, K::Long},
        {14, 430, "ReminderOverrideDefault", col::ReminderOverrideDefault, K::Flag},
        {15, 440, "ReminderPlaySound", col::ReminderPlaySound, K::Flag},
        {16, 450, "ReminderSet", col::ReminderSet, K::Flag},
        {17, 460, "ReminderSoundFile", col::ReminderSoundFile, K::Text},
        {18, 470, "ReminderTime", col::ReminderTime, K::ReminderTime},
        {19, 480, "Role", col::Role, K::Text},
        {20, 490, "Sensitivity", col::Sensitivity, K::Long},
        {21, 500, "Status", col::Status, K::Long},
        {22, 510, "TeamTask", col::TeamTask, K::Flag},
        {23, 520, "", -1, K::Links},
        {24, 600, "", -1, K::Recurrence},
        {25, 800, "TotalWork", col::TotalWork, K::Long},
    };
    return table;
}

} // namespace steplets::processing
