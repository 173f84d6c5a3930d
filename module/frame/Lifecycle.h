// What the module does when it is loaded and before it goes.
#pragma once

// Takes the module from not initialised to initialised.
void InitialiseModule();

// The way back, in an order of its own.
void ShutDownModule();
