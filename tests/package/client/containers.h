#pragma once

// Whether the containers do a little of everything.
bool ContainersHold();
