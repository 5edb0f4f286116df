-- The same as by_key.sql, for cases that are paired by their place in the files.
SELECT count_if(isPair)::BIGINT AS pairs,
       count_if(/* each variable, " OR " */"VARIABLE"/* end */)::BIGINT AS differingPairs,
       count_if(isOnlyInFirst)::BIGINT AS onlyInFirst,
       count_if(isOnlyInSecond)::BIGINT AS onlyInSecond,
       /* each variable, ", " */count_if("VARIABLE")::BIGINT AS "VARIABLE"/* end */
FROM (SELECT a.place = b.place AS isPair,
             b.place IS NULL AS isOnlyInFirst,
             a.place IS NULL AS isOnlyInSecond,
             /* each variable, ", " */
             a.place = b.place AND a."VARIABLE" IS DISTINCT FROM b."VARIABLE" AS "VARIABLE"
             /* end */
      FROM (SELECT row_number() OVER () AS place, * FROM read_csv('a.csv')) AS a
           FULL OUTER JOIN (SELECT row_number() OVER () AS place, * FROM read_csv('b.csv')) AS b ON a.place = b.place);
