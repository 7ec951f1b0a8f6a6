#include "widgets/uSqlHighlighterWords.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace {

// Reserved words of the MySQL 8.4 and MariaDB 10.11 manuals, and the words beside them that stand
// in the statements people write daily.
const std::string_view Keywords =
    "accessible account action add after against aggregate algorithm all alter always analyze and "
    "as asc asensitive at autocommit auto_increment avg_row_length backup before begin between "
    "binlog body both btree by cache call cascade cascaded case catalog_name chain change "
    "changed channel character charset check checksum cipher close coalesce code collate collation "
    "column columns comment commit committed completion component compressed compression "
    "concurrent "
    "condition connection consistent constraint contains continue convert cpu create cross cube "
    "cume_dist current current_date current_role current_time current_timestamp current_user "
    "cursor data database databases day_hour day_microsecond day_minute day_second deallocate "
    "declare default definer definition delay_key_write delayed delete delimiter dense_rank desc "
    "describe deterministic directory disable discard disk distinct distinctrow div do drop dual "
    "dumpfile duplicate dynamic each else elseif empty enable enclosed encryption end ends "
    "enforced "
    "engine engines error errors escape escaped event events every except exchange execute exists "
    "exit expansion expire explain export extended extent_size false fetch fields file first "
    "first_value fixed flush following follows for force foreign found from full fulltext function "
    "general generated get global grant grants group grouping groups handler hash having help "
    "high_priority history host hosts hour_microsecond hour_minute hour_second identified if "
    "ignore "
    "immutable import in index indexes infile inner inout insensitive insert insert_method install "
    "instance intersect into invisible invoker io_after_gtids io_before_gtids ipc is isolation "
    "issuer iterate join json_table key key_block_size keys kill lag language last last_value "
    "lateral lead leading leave leaves left less level like limit linear lines list load local "
    "localtime localtimestamp lock locked locks logfile logs loop low_priority master "
    "master_ssl_verify_server_cert match max_rows maxvalue medium memory merge min_rows "
    "minute_microsecond minute_second mod mode modifies modify mutex names natural never new next "
    "no no_write_to_binlog nocycle nodegroup none not nowait nth_value ntile null nulls of off "
    "offset old on one only open optimize optimizer_costs option optionally options or order "
    "ordinality others out outer outfile over overlaps owner package page parser partial partition "
    "partitioning partitions password path percent_rank persist persist_only phase plugin plugins "
    "port preceding prepare preserve prev previous primary privileges procedure process "
    "processlist "
    "profile profiles proxy purge quarter query quick range rank read read_write reads rebuild "
    "recover recursive redundant references regexp relay release reload rename reorganize repair "
    "repeat repeatable replace replica replicas replication require reset resignal restart "
    "restore restrict resume return returned_sqlstate returning returns reuse reverse revoke "
    "right rlike role rollback rollup rotate routine row row_count row_format row_number rows "
    "savepoint schedule schema schemas second_microsecond security select sensitive separator "
    "sequence serializable server session set shared show shutdown signal signed simple slave "
    "slow snapshot socket some soname sounds source spatial specific sql sql_big_result "
    "sql_calc_found_rows sql_no_cache sql_small_result sqlexception sqlstate sqlwarning srid ssl "
    "stacked start starting starts stats_auto_recalc stats_persistent stats_sample_pages status "
    "stop storage stored straight_join subject subpartition subpartitions super suspend switches "
    "system table tables tablespace temporary temptable terminated than then ties to "
    "trailing transaction trigger triggers true truncate type types uncommitted undefined undo "
    "undofile union uninstall unique unknown unlock unsigned until update upgrade usage use user "
    "using utc_date utc_time utc_timestamp validation value values variables view virtual visible "
    "wait warnings when where while window with without work wrapper write xa xor year_month "
    "zerofill";

const std::string_view DataTypes =
    "bigint binary bit blob bool boolean char dec decimal double enum fixed float float4 float8 "
    "geometry geometrycollection inet4 inet6 int int1 int2 int3 int4 int8 integer json "
    "linestring long longblob longtext mediumblob mediumint mediumtext middleint multilinestring "
    "multipoint multipolygon national nchar nvarchar numeric point polygon precision real serial "
    "smallint text tinyblob tinyint tinytext uuid varbinary varchar varcharacter varying vector "
    "datetime timestamp date time year";

const std::string_view Functions =
    "abs acos adddate addtime aes_decrypt aes_encrypt any_value ascii asin atan atan2 avg "
    "benchmark "
    "bin bin_to_uuid bit_and bit_count bit_length bit_or bit_xor cast ceil ceiling char "
    "char_length character_length charset coalesce coercibility collation compress concat "
    "concat_ws "
    "connection_id conv convert convert_tz cos cot count crc32 cume_dist curdate current_date "
    "current_time current_timestamp current_user curtime database date date_add date_format "
    "date_sub datediff day dayname dayofmonth dayofweek dayofyear default degrees dense_rank elt "
    "exp export_set extract extractvalue field find_in_set first_value floor format format_bytes "
    "found_rows from_base64 from_days from_unixtime geometrytype get_format get_lock greatest "
    "group_concat grouping hex hour if ifnull in inet6_aton inet6_ntoa inet_aton inet_ntoa insert "
    "instr interval is_free_lock is_ipv4 is_ipv6 is_used_lock is_uuid isnull json_array "
    "json_array_append json_array_insert json_arrayagg json_contains json_contains_path json_depth "
    "json_extract json_insert json_keys json_length json_merge json_merge_patch "
    "json_merge_preserve json_object json_objectagg json_overlaps json_pretty json_quote "
    "json_remove json_replace json_schema_valid json_search json_set json_storage_size json_table "
    "json_type json_unquote json_valid json_value lag last_day last_insert_id last_value lcase "
    "lead least left length ln load_file localtime localtimestamp locate log log10 log2 lower lpad "
    "ltrim make_set makedate maketime master_pos_wait max md5 microsecond mid min minute mod month "
    "monthname name_const nextval now nth_value ntile nullif nvl nvl2 oct octet_length "
    "old_password "
    "ord password percent_rank period_add period_diff pi position pow power quarter quote radians "
    "rand random_bytes rank regexp_instr regexp_like regexp_replace regexp_substr release_lock "
    "repeat replace reverse right round row_count row_number rpad rtrim schema sec_to_time second "
    "session_user setval sha sha1 sha2 sign sin sleep soundex space sqrt st_area st_asgeojson "
    "st_asbinary st_astext st_aswkb st_aswkt st_buffer st_centroid st_contains st_crosses "
    "st_difference st_dimension st_disjoint st_distance st_distance_sphere st_endpoint st_envelope "
    "st_equals st_geomfromgeojson st_geomfromtext st_geomfromwkb st_intersection st_intersects "
    "st_isempty st_isvalid st_length st_numgeometries st_numpoints st_overlaps st_pointn "
    "st_srid st_startpoint st_touches st_transform st_union st_within st_x st_y std stddev "
    "stddev_pop stddev_samp str_to_date strcmp subdate substr substring substring_index subtime "
    "sum sysdate system_user tan time time_format time_to_sec timediff timestamp timestampadd "
    "timestampdiff to_base64 to_days to_seconds trim truncate ucase uncompress "
    "uncompressed_length unhex unix_timestamp updatexml upper user utc_date utc_time utc_timestamp "
    "uuid uuid_short uuid_to_bin validate_password_strength values var_pop var_samp variance "
    "version wait_for_executed_gtid_set week weekday weekofyear weight_string year yearweek";

struct TWordStyles
{
    TSqlStyle Plain = ssDefault;
    TSqlStyle Called = ssDefault;
};

template <typename TVisit>
void ForEachWord(std::string_view words, TVisit visit)
{
    while (!words.empty()) {
        const size_t end = std::min(words.find(' '), words.size());
        visit(words.substr(0, end));
        words.remove_prefix(std::min(end + 1, words.size()));
    }
}

using TWordMap = std::unordered_map<std::string_view, TWordStyles>;

TWordMap MakeWords()
{
    TWordMap map;
    ForEachWord(Keywords, [&](auto word) { map[word] = {ssKeyword, ssKeyword}; });
    ForEachWord(DataTypes, [&](auto word) { map[word] = {ssDataType, ssDataType}; });
    ForEachWord(Functions, [&](auto word) { map[word].Called = ssFunction; });
    // Followed by a bracket far more often as a word of the language than as a function.
    for (const std::string_view word : {"in", "values", "insert", "char", "default"})
        map[word].Called = map[word].Plain;
    return map;
}

const TWordMap &Words()
{
    static const TWordMap words = MakeWords();
    return words;
}

} // namespace

TSqlStyle TSqlHighlighterWords::StyleOf(std::string_view lowerWord, bool isCalled)
{
    const auto found = Words().find(lowerWord);
    if (found == Words().end())
        return ssDefault;
    return isCalled ? found->second.Called : found->second.Plain;
}

size_t TSqlHighlighterWords::LongestWord()
{
    static const size_t longest = [] {
        size_t length = 0;
        for (const auto &entry : Words())
            length = std::max(length, entry.first.size());
        return length;
    }();
    return longest;
}
