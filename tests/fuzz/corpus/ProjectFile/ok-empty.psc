No Prep Configuration
No Model Configuration
No Vels Configuration
