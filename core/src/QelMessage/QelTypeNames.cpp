#include "QelMessage/QelNameTables.h"

namespace Qel::QelNames {

namespace {

// Names of the record classes that are identified by a complex type. Types up to 100 identify no class and have no
// name.
constexpr Entry entries[] = {
    {102, "resource_alert"},
    {107, "backup_options"},
    {108, "restore_options"},
    {109, "selective_restore_options"},
    {117, "os"},
    {118, "env_status"},
    {120, "env_config"},
    {121, "virtual_env_config"},
    {122, "env"},
    {129, "resource"},
    {130, "time_interval"},
    {132, "net_address"},
    {134, "ip_range"},
    {136, "net_interface"},
    {144, "usage_stats"},
    {147, "token"},
    {148, "auth_name"},
    {149, "connection_info"},
    {151, "vt_info"},
    {152, "vt_settings"},
    {155, "package"},
    {156, "any_event_data"},
    {159, "realm"},
    {160, "event"},
    {161, "info"},
    {166, "net_device"},
    {167, "net_nic"},
    {175, "ds_object_info"},
    {181, "dir_control"},
    {182, "dir_realm"},
    {183, "dir_vlv_control"},
    {184, "dir_sort_control"},
    {217, "net_vlan"},
    {218, "net_bridge"},
    {230, "package_rpm"},
    {249, "resource_pool"},
    {250, "ip_resource_pool"},
    {251, "ip_resource"},
    {272, "package_linux"},
    {273, "package_deb"},
    {275, "clone_options"},
    {276, "p2v_migrate_options"},
    {277, "v2v_migrate_options"},
    {278, "v2p_migrate_options"},
    {282, "backup_get_info_options"},
    {283, "backup_get_env_info_options"},
    {284, "backup_data"},
    {285, "env_backup_data"},
    {294, "trigger"},
    {295, "daily_trigger"},
    {296, "weekly_trigger"},
    {297, "monthly_trigger"},
    {298, "monthly_day_of_week_trigger"},
    {299, "once_trigger"},
    {300, "server_group_alert"},
    {301, "common_device"},
    {302, "windows_device"},
    {303, "scsi_device"},
    {307, "hw_node_notes"},
    {309, "native_config"},
    {311, "log_options"},
    {375, "disk_image"},
    {390, "vnc_connection_info"},
};

} // namespace

constinit const Table typeTable = checkedTable<entries>('t');

} // namespace Qel::QelNames
