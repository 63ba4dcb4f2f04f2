#pragma once

#include <string>
#include <vector>

// Runs a program to its end and answers its exit code.
int RunToTheEnd(const std::string& program, const std::vector<std::string>& arguments);
