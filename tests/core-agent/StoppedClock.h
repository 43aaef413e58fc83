#pragma once

/// Lets the platform's clock give no reading from now on.
void StopTheClock();
