// The kernel's data of documents and their command, as the kernel's entry point begins and ends them.
#pragma once

void BeginDocData();
void EndDocData();
