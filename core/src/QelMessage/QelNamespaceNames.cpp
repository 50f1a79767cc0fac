#include "QelMessage/QelNameTables.h"

namespace Qel::QelNames {

namespace {

constexpr Entry entries[] = {
    {270, "directory"}, {278, "device"},        {281, "resource"}, {282, "backup"},     {283, "scheduler"},
    {285, "alert"},     {286, "storage"},       {292, "env"},      {294, "migration"},  {296, "progress"},
    {299, "network"},   {302, "linux_package"}, {306, "ip_pool"},  {308, "disk_image"},
};

} // namespace

constinit const Table namespaceTable = checkedTable<entries>('n');

} // namespace Qel::QelNames
