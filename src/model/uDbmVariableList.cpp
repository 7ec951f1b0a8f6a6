#include "model/uDbmVariableList.h"

#include "sql/uDbmCommands.h"
#include "support/uFormat.h"

#include <QSet>

namespace {

const QSet<QString> &Seconds()
{
    static const QSet<QString> names = {
        "wait_timeout",      "connect_timeout",          "delayed_insert_timeout",
        "flush_time",        "innodb_lock_wait_timeout", "interactive_timeout",
        "lock_wait_timeout", "long_query_time",          "net_read_timeout",
        "net_write_timeout", "slave_net_timeout",        "slow_launch_time"};
    return names;
}

// Deliberate: some of them are numbers of rows or characters.
const QSet<QString> &Bytes()
{
    static const QSet<QString> names = {"binlog_cache_size",
                                        "bulk_insert_buffer_size",
                                        "group_concat_max_len",
                                        "innodb_additional_mem_pool_size",
                                        "innodb_buffer_pool_size",
                                        "innodb_log_buffer_size",
                                        "innodb_log_file_size",
                                        "join_buffer_size",
                                        "key_buffer_size",
                                        "key_cache_block_size",
                                        "max_allowed_packet",
                                        "max_binlog_cache_size",
                                        "max_binlog_size",
                                        "max_heap_table_size",
                                        "max_join_size",
                                        "max_length_for_sort_data",
                                        "max_relay_log_size",
                                        "max_sort_length",
                                        "myisam_max_extra_sort_file_size",
                                        "myisam_max_sort_file_size",
                                        "myisam_mmap_size",
                                        "myisam_sort_buffer_size",
                                        "net_buffer_length",
                                        "preload_buffer_size",
                                        "query_alloc_block_size",
                                        "query_cache_limit",
                                        "query_cache_min_res_unit",
                                        "query_cache_size",
                                        "query_prealloc_size",
                                        "range_alloc_block_size",
                                        "read_buffer_size",
                                        "read_rnd_buffer_size",
                                        "sort_buffer_size",
                                        "sql_max_join_size",
                                        "sql_select_limit",
                                        "thread_stack",
                                        "tmp_table_size",
                                        "transaction_alloc_block_size",
                                        "transaction_prealloc_size"};
    return names;
}

const QSet<QString> &Megabytes()
{
    static const QSet<QString> names = {"innodb_autoextend_increment",
                                        "innodb_buffer_pool_awe_mem_mb"};
    return names;
}

} // namespace

QString TDbmVariableCommentFormatter::Format(const QString &name, const QString &value)
{
    bool isWhole = false;
    const qint64 number = value.toLongLong(&isWhole);
    // "No limit" is 2^64 - 1 for many of them.
    const double size =
        isWhole ? static_cast<double>(number) : static_cast<double>(value.toULongLong(&isWhole));
    if (!isWhole)
        return {};
    const QString key = name.toLower();
    if (Seconds().contains(key))
        return TFormat::DurationText(number);
    if (Bytes().contains(key))
        return TFormat::SizeText(size);
    return Megabytes().contains(key) ? TFormat::SizeText(size * 1024 * 1024) : QString();
}

QString TDbmVariableItem::GetComment()
{
    return TDbmVariableCommentFormatter::Format(Entity().Name, Entity().Value);
}

QList<TDbmVariableEntity> TDbmVariableList::SelectEntities()
{
    return FCommands->Variables().ExecuteSelect(FOption);
}
