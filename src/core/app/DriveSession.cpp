#include "core/app/DriveSession.h"

#include "core/connect/OpenAdvice.h"
#include "core/shared/Global.h"

namespace velora {

DriveSession::DriveSession(Global& global, LinkUi& ui, ShellSetup setup)
    : global_(global),
      setup_(std::move(setup)),
      engine_(global.Link, ui, setup_.ticks),
      params_(engine_, global.Params),
      points_(engine_, global.Points),
      commands_(engine_, global.Com),
      monitor_(engine_),
      alarms_(engine_, global.Alarms),
      wave_(engine_, global),
      adapterWatch_(engine_, global.Connection),
      copies_(global, params_, points_, commands_),
      activity_(global, engine_, params_) {
    engine_.setDeviceOverride(setup_.deviceOverride);
    adviseOpenFailures(engine_);
}

}  // namespace velora
