#include "component/api/path_context.h"

namespace zel {

PathContext presentContext(Component& component) {
  return {component.settingsReader(), &component.geodesy(),        component.terrain(),
          component.samplerMaker(),   component.state().datumText, component.normalTable()};
}

}  // namespace zel
