// The instances that every routine shares (declared in Globals.h): the
// gateway, the parameter strings and the validator, and the closing of the
// database that drops them. Kept apart from Globals.cpp, which only holds the
// paths and settings of the run, so that the gateway can read those without a
// circle.
#include <memory>
#include <vector>

#include "Globals.h"
#include "Validar.h"
#include "ZoAccess.h"
#include "ZoParameterString.h"

namespace {
std::unique_ptr<ZoAccess> g_access;

std::vector<std::function<void()>>& closeSteps()
{
    static std::vector<std::function<void()>> steps;
    return steps;
}
} // namespace

ZoAccess& gAccess()
{
    if (!g_access)
        g_access = std::make_unique<ZoAccess>();
    return *g_access;
}

ZoParameterString& gParameters()
{
    static ZoParameterString parameters;
    return parameters;
}

Validar& gValidar()
{
    static Validar validar;
    return validar;
}

void CloseDatabase()
{
    if (g_access)
        g_access->Dispose();
    g_access.reset();
    for (const auto& release : closeSteps())
        release();
    CloseAllConnections();
}

void OnCloseDatabase(std::function<void()> release)
{
    closeSteps().push_back(std::move(release));
}
