#pragma once

// The umbrella header: every public header of the library.
