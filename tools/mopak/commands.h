// The commands of mopak. Each does its work, tells what failed on standard error, and returns the exit code:
// 0 if all went well, 1 if something failed.
#pragma once

#include "tools/mopak/options.h"

int pack_create(const pack_options& options);
int pack_add(const pack_options& options);
int pack_list(const pack_options& options);
int pack_info(const pack_options& options);
int pack_extract(const pack_options& options);
int pack_test(const pack_options& options);
