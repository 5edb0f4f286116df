-- The comparison that the benchmark asks for, in SQL: how many cases have a partner, how many pairs differ in any
-- variable, which cases stand in one file only, and how often each variable differs.
SELECT count(*) FILTER (a.id = b.id) AS pairs,
       count(*) FILTER (a.id = b.id AND (a.n1 IS DISTINCT FROM b.n1 OR a.n2 IS DISTINCT FROM b.n2
                                      OR a.n3 IS DISTINCT FROM b.n3 OR a.n4 IS DISTINCT FROM b.n4
                                      OR a.n5 IS DISTINCT FROM b.n5 OR a.n6 IS DISTINCT FROM b.n6
                                      OR a.s1 IS DISTINCT FROM b.s1 OR a.s2 IS DISTINCT FROM b.s2
                                      OR a.s3 IS DISTINCT FROM b.s3)) AS differingPairs,
       count(*) FILTER (b.id IS NULL) AS onlyInFirst,
       count(*) FILTER (a.id IS NULL) AS onlyInSecond,
       count(*) FILTER (a.id = b.id AND a.n1 IS DISTINCT FROM b.n1) AS n1,
       count(*) FILTER (a.id = b.id AND a.n2 IS DISTINCT FROM b.n2) AS n2,
       count(*) FILTER (a.id = b.id AND a.n3 IS DISTINCT FROM b.n3) AS n3,
       count(*) FILTER (a.id = b.id AND a.n4 IS DISTINCT FROM b.n4) AS n4,
       count(*) FILTER (a.id = b.id AND a.n5 IS DISTINCT FROM b.n5) AS n5,
       count(*) FILTER (a.id = b.id AND a.n6 IS DISTINCT FROM b.n6) AS n6,
       count(*) FILTER (a.id = b.id AND a.s1 IS DISTINCT FROM b.s1) AS s1,
       count(*) FILTER (a.id = b.id AND a.s2 IS DISTINCT FROM b.s2) AS s2,
       count(*) FILTER (a.id = b.id AND a.s3 IS DISTINCT FROM b.s3) AS s3
FROM read_csv('a.csv') AS a FULL OUTER JOIN read_csv('b.csv') AS b ON a.id = b.id;
