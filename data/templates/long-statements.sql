SELECT id, user, host, db, time, state, info
FROM information_schema.processlist
WHERE command <> 'Sleep' AND time >= 10
ORDER BY time DESC;
