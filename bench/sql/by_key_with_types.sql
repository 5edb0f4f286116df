-- The same as by_key.sql, for numbers that DuckDB does not find by itself: it takes a column with +7 in it for text.
SELECT count_if(isPair)::BIGINT AS pairs,
       count_if(/* each variable, " OR " */"VARIABLE"/* end */)::BIGINT AS differingPairs,
       count_if(isOnlyInFirst)::BIGINT AS onlyInFirst,
       count_if(isOnlyInSecond)::BIGINT AS onlyInSecond,
       /* each variable, ", " */count_if("VARIABLE")::BIGINT AS "VARIABLE"/* end */
FROM (SELECT a.id = b.id AS isPair,
             b.id IS NULL AS isOnlyInFirst,
             a.id IS NULL AS isOnlyInSecond,
             /* each variable, ", " */a.id = b.id AND a."VARIABLE" IS DISTINCT FROM b."VARIABLE" AS "VARIABLE"/* end */
      FROM read_csv('a.csv', types = {/* each number, ", " */'VARIABLE': 'DOUBLE'/* end */}) AS a
           FULL OUTER JOIN read_csv('b.csv', types = {/* each number, ", " */'VARIABLE': 'DOUBLE'/* end */}) AS b
           ON a.id = b.id);
