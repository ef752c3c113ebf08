// The table of all parameters for `--list`.
#pragma once

void printParameterList();
