#include <tarn/Job.h>

#include <tarn/Process.h>

#include "../foundation/Check.h"

namespace tarn {
Job::Job() : WindowsHandle(ensure(CreateJobObjectW(nullptr, nullptr), "Can't create job")) {}

void Job::add(const Process& process) const
{
    ensure(AssignProcessToJobObject(getHandle(), process.getHandle()), "Can't put process into job");
}

void Job::endWithOwner(bool ends) const
{
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = ends ? JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE : 0;
    ensure(SetInformationJobObject(getHandle(), JobObjectExtendedLimitInformation, &limits, sizeof limits),
           "Can't change limits of job");
}

void Job::terminate(unsigned exitCode) const { ensure(TerminateJobObject(getHandle(), exitCode), "Can't end job"); }

unsigned Job::getProcessCount() const
{
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION counts{};
    ensure(QueryInformationJobObject(getHandle(), JobObjectBasicAccountingInformation, &counts, sizeof counts, nullptr),
           "Can't ask job for its processes");
    return counts.ActiveProcesses;
}
} // namespace tarn
