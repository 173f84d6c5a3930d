// The module's commands: their names, what they call, and their place on the command stack.
#pragma once

// Takes commands that another application of the add-on registered under names of ours off the stack.
void RemoveForeignCommands();

// Puts the module's commands on the stack, in the group "ZEF_PIPESTSTEM". One that the stack refuses is
// passed over.
void RegisterCommands();

// Takes the group off the stack.
void RemoveCommands();
