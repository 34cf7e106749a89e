// Which driver this process calls.
#pragma once

namespace shell {

// Whether calls reach the model: no other driver has been loaded before it. The tap may stand in front.
bool calls_reach_the_model();

} // namespace shell
